// Gives each file of a directory to the fuzzer's target, for builds without the fuzzer.

#include <filesystem>
#include <iostream>

#include "tests/temporary_file.h"
#include "tools/fuzz/input_file.h"

int main(int, char **argv)
{
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(argv[1])) {
        std::cout << entry.path() << std::endl; // the last one named is the one that failed
        const std::string bytes = ReadWhole(entry.path());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
        count++;
    }
    return count > 0 ? 0 : 1;
}
