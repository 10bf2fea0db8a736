// Files and directories that live as long as their object; what files hold, and hashes of it.

#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include <unistd.h>

class TemporaryFile
{
public:
    explicit TemporaryFile(const std::string &content)
    {
        close(mkstemp(name));
        std::ofstream(name, std::ios::binary) << content;
    }
    TemporaryFile(const TemporaryFile &) = delete;
    ~TemporaryFile() { unlink(name); }
    const char *path() const { return name; }

private:
    char name[32] = "/tmp/sarkelo-test-XXXXXX";
};

// An empty directory, which is the current one meanwhile.
class TemporaryDirectory
{
public:
    TemporaryDirectory() { std::filesystem::current_path(path); }
    TemporaryDirectory(const TemporaryDirectory &) = delete;
    ~TemporaryDirectory()
    {
        std::filesystem::current_path(back);
        std::filesystem::remove_all(path);
    }
    const std::filesystem::path path = mkdtemp(std::string("/tmp/sarkelo-test-XXXXXX").data());

private:
    const std::filesystem::path back = std::filesystem::current_path();
};

inline int CountFiles()
{
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("."), {}));
}

inline std::string ReadWhole(const std::filesystem::path &path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// What a function writes to the file that it is given.
inline std::string Written(const std::function<void(FILE *)> &write)
{
    const TemporaryFile file("");
    FILE *stream = fopen(file.path(), "wb");
    write(stream);
    fclose(stream);
    return ReadWhole(file.path());
}

// FNV-1a over bytes; `hash` continues an earlier one.
inline unsigned long long Hash(const void *data, std::size_t size,
                               unsigned long long hash = 14695981039346656037ULL)
{
    for (std::size_t i = 0; i < size; i++)
        hash = (hash ^ static_cast<const unsigned char *>(data)[i]) * 1099511628211ULL;
    return hash;
}
