// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Gives a fuzz target every file of the folders named by the arguments; with --random N also N random changes of each.
// For compilers without libFuzzer, and for the tests.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

int main(int argc, char** argv)
{
    std::vector<std::filesystem::path> files;
    int changes = 0;
    for (int i = 1; i < argc; ++i) {
        if (std::string(argv[i]) == "--random" && i + 1 < argc)
            changes = std::atoi(argv[++i]);
        else if (std::filesystem::is_directory(argv[i]))
            for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
                files.push_back(entry.path());
    }
    if (files.empty()) {
        std::fputs("no seeds\n", stderr);
        return 1;
    }
    std::sort(files.begin(), files.end());
    std::mt19937 random(1);
    for (const std::filesystem::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string seed{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(seed.data()), seed.size());
        for (int i = 0; i < changes; ++i) {
            std::string changed = seed;
            for (auto count = random() % 4 + 1; count > 0; --count) {
                const std::size_t at = random() % (changed.size() + 1);
                switch (random() % 3) {
                case 0:
                    changed.insert(at, 1, static_cast<char>(random()));
                    break;
                case 1:
                    changed.erase(at, random() % 8);
                    break;
                default:
                    if (at < changed.size())
                        changed[at] = static_cast<char>(random());
                }
            }
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(changed.data()), changed.size());
        }
    }
    std::printf("%zu seeds, %d changes of each\n", files.size(), changes);
    return 0;
}
