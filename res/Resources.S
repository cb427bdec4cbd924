/* SPDX-FileCopyrightText: The RuvMod authors
 * SPDX-License-Identifier: Apache-2.0
 *
 * The compiled resources as read-only data of the module. RUVMOD_RES names the file. */
#if defined(_WIN32)
    .section .rdata, "dr"
#else
    .section .rodata, "a", @progbits
#endif
    .balign 8
    .globl ruvmod_res_begin
    .globl ruvmod_res_end
ruvmod_res_begin:
    .incbin RUVMOD_RES
ruvmod_res_end:
    .byte 0
#if defined(__ELF__)
    .section .note.GNU-stack, "", @progbits
#endif
