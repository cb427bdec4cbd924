// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The fonts of drawings, so that text looks and measures the same on every machine. NOTO_SANS_REGULAR, NOTO_SANS_BOLD
// and NOTO_SANS_MATH are the quoted paths of the font files.

#ifdef __ELF__
    .section .rodata, "a", %progbits
#else
    .section .rdata, "dr"
#endif

    .balign 16
    .globl ruvFontRegularBegin
    .globl ruvFontRegularEnd
ruvFontRegularBegin:
    .incbin NOTO_SANS_REGULAR
ruvFontRegularEnd:
    .byte 0

    .balign 16
    .globl ruvFontBoldBegin
    .globl ruvFontBoldEnd
ruvFontBoldBegin:
    .incbin NOTO_SANS_BOLD
ruvFontBoldEnd:
    .byte 0

    .balign 16
    .globl ruvFontMathBegin
    .globl ruvFontMathEnd
ruvFontMathBegin:
    .incbin NOTO_SANS_MATH
ruvFontMathEnd:
    .byte 0

#ifdef __ELF__
    .hidden ruvFontRegularBegin
    .hidden ruvFontRegularEnd
    .hidden ruvFontBoldBegin
    .hidden ruvFontBoldEnd
    .hidden ruvFontMathBegin
    .hidden ruvFontMathEnd
    .section .note.GNU-stack, "", %progbits
#endif
