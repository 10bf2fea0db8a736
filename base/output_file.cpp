#include "base/output_file.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Number of temporary names that are tried before the file is written in place.
constexpr int kMostTries = 100;
constexpr mode_t kNewFileMode = 0666; // less the user's mask
constexpr mode_t kModeBits = 07777;

OutputFile::OutputFile(const char *path) : name(path)
{
    try {
        Open();
    } catch (const std::bad_alloc &) {
        errno = ENOMEM;
    }
    if (stream == nullptr)
        reason = errno;
    errno = 0; // from now on, errno is why writing failed
}

OutputFile::~OutputFile()
{
    if (stream == nullptr)
        return;
    fclose(stream);
    Discard();
}

Fault OutputFile::Finish()
{
    return stream != nullptr && Complete() ? Fault() : WriteFault(name, strerror(Reason()));
}

Fault WriteFault(const std::string &path, const std::string &reason, FaultKind kind)
{
    return {kind, "Cannot write \"" + path + "\": " + reason};
}

bool OutputFile::Complete()
{
    bool whole = fflush(stream) == 0 && !ferror(stream);
    if (whole && replaces && !temporary.empty())
        whole = fsync(fileno(stream)) == 0;
    reason = errno;
    if (fclose(stream) != 0 && whole) {
        whole = false;
        reason = errno;
    }
    stream = nullptr;
    if (whole && !temporary.empty() && rename(temporary.c_str(), target.c_str()) != 0) {
        whole = false;
        reason = errno;
    }
    if (!whole)
        Discard();
    return whole;
}

void OutputFile::Open()
{
    if (!OpenTemporary())
        stream = fopen(name, "w");
}

// Opens a temporary file in the same folder. Returns false, nothing changed, if the file must be written in place.
bool OutputFile::OpenTemporary()
{
    struct stat old = {};
    replaces = stat(name, &old) == 0;
    if (replaces) {
        if (!S_ISREG(old.st_mode) || old.st_nlink > 1 || access(name, W_OK) != 0)
            return false;
        char resolved[PATH_MAX];
        if (realpath(name, resolved) == nullptr)
            return false;
        target = resolved;
    } else {
        if (errno != ENOENT || lstat(name, &old) == 0) // for example a dangling symbolic link
            return false;
        target = name;
    }
    if (!CreateTemporary())
        return false;
    const int file = fileno(stream);
    if (replaces &&
        ((geteuid() != old.st_uid || getegid() != old.st_gid) && fchown(file, old.st_uid, old.st_gid) != 0)) {
        fclose(stream);
        stream = nullptr;
        Discard();
        return false;
    }
    if (replaces)
        fchmod(file, old.st_mode & kModeBits);
    return true;
}

bool OutputFile::CreateTemporary()
{
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? "" : target.substr(0, slash + 1);
    const std::string stem = folder + ".sarkelo-" + std::to_string(getpid()) + "-";
    for (int number = 0; number < kMostTries; number++) {
        temporary = stem + std::to_string(number);
        const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
        if (file < 0 && errno == EEXIST)
            continue;
        stream = file < 0 ? nullptr : fdopen(file, "w");
        if (stream != nullptr)
            return true;
        if (file >= 0) {
            close(file);
            Discard();
        }
        break;
    }
    temporary.clear();
    return false;
}

// Removes the temporary file.
void OutputFile::Discard()
{
    if (!temporary.empty())
        unlink(temporary.c_str());
    temporary.clear();
}
