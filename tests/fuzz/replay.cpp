// Gives each file of a directory to the fuzzer's target, for builds without the fuzzer.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tools/fuzz/input_file.h"

int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; i++)
        for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
            printf("%s\n", entry.path().c_str());
            fflush(stdout); // the last one named is the one that failed
            std::ifstream stream(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
            count++;
        }
    printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
