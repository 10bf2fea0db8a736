// A file that lives as long as its object.

#pragma once

#include <cstdio>
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
