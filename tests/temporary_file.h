// Files and directories that live as long as their object.

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
        const int descriptor = mkstemp(name);
        FILE *file = fdopen(descriptor, "wb");
        fwrite(content.data(), 1, content.size(), file);
        fclose(file);
    }
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;
    ~TemporaryFile() { unlink(name); }

    const char *path() const { return name; }

private:
    char name[32] = "/tmp/sarkelo-test-XXXXXX";
};

// An empty directory, which is the current one meanwhile.
class TemporaryDirectory
{
public:
    TemporaryDirectory() : back(std::filesystem::current_path())
    {
        char name[] = "/tmp/sarkelo-test-XXXXXX";
        path = mkdtemp(name);
        std::filesystem::current_path(path);
    }
    TemporaryDirectory(const TemporaryDirectory &) = delete;
    TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;
    ~TemporaryDirectory()
    {
        std::filesystem::current_path(back);
        std::filesystem::remove_all(path);
    }

    std::filesystem::path path;

private:
    std::filesystem::path back;
};

inline std::string ReadWhole(const std::filesystem::path &path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// What a function writes to the file that it is given.
inline std::string Written(const std::function<void(FILE *)> &write)
{
    char *text = nullptr;
    std::size_t length = 0;
    FILE *file = open_memstream(&text, &length);
    write(file);
    fclose(file);
    const std::string result(text, length);
    free(text);
    return result;
}

inline int CountFiles()
{
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("."), {}));
}
