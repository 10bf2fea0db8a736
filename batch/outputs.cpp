#include "batch/outputs.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "base/output_file.h"
#include "search/neighbour_search.h"

namespace fs = std::filesystem;

static Fault CheckOutput(const std::string &path, bool mayreplace);
static Fault CheckSlices(const SliceRequest &slices, bool mayreplace);
static Fault CheckDistinctPaths(const Command &command);

bool IsSameFile(const std::string &a, const std::string &b)
{
    const auto canonical = [](const std::string &path) {
        std::error_code error;
        const fs::path absolute = fs::absolute(path, error);
        const fs::path found = fs::weakly_canonical(absolute, error);
        return error ? fs::path(path) : found;
    };
    return canonical(a) == canonical(b);
}

Fault CheckOutputs(const Command &command, bool ownoutput, bool owncheckpoint)
{
    if (Fault fault = CheckDistinctPaths(command))
        return fault;
    if (Fault fault = CheckOutput(command.output, command.overwrites || ownoutput))
        return fault;
    if (Fault fault = CheckOutput(command.checkpoint, command.overwrites || owncheckpoint))
        return fault;
    for (const SaveRequest &save : command.saves)
        if (Fault fault = CheckOutput(save.path, command.overwrites))
            return fault;
    if (!command.statistics.empty())
        if (Fault fault = CheckOutput(command.statistics, command.overwrites))
            return fault;
    return command.slices ? CheckSlices(*command.slices, command.overwrites) : Fault();
}

// What is no regular file, such as a device, needs no permission to be replaced: it is written in place.
static Fault CheckOutput(const std::string &path, bool mayreplace)
{
    const auto cannot = [&] { return Fault(kFileFault, path + ": cannot be written: " + strerror(errno)); };
    struct stat about = {};
    if (stat(path.c_str(), &about) == 0) {
        if (S_ISDIR(about.st_mode))
            return {kFileFault, path + ": is a directory"};
        if (S_ISREG(about.st_mode) && !mayreplace)
            return {kFileFault, path + ": exists already; --force overwrites it"};
        return access(path.c_str(), W_OK) == 0 ? Fault() : cannot();
    }
    if (errno != ENOENT)
        return cannot();
    const fs::path folder = fs::path(path).parent_path();
    return access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) == 0 ? Fault() : cannot();
}

static Fault CheckSlices(const SliceRequest &slices, bool mayreplace)
{
    std::error_code error;
    if (!fs::exists(slices.folder, error))
        return CheckOutput(slices.folder, false);
    if (!fs::is_directory(slices.folder, error))
        return {kFileFault, slices.folder + ": not a directory"};
    if (access(slices.folder.c_str(), W_OK | X_OK) != 0)
        return {kFileFault, slices.folder + ": cannot be written: " + strerror(errno)};
    if (mayreplace)
        return {};
    for (const fs::directory_entry &entry : fs::directory_iterator(slices.folder, error))
        if (entry.path().filename().string().starts_with("slice_"))
            return {kFileFault, slices.folder + ": holds slices already; --force overwrites them"};
    return {};
}

static Fault CheckDistinctPaths(const Command &command)
{
    std::vector<std::string> written = {command.output};
    if (command.checkpoint != command.output)
        written.push_back(command.checkpoint);
    for (const SaveRequest &save : command.saves)
        written.push_back(save.path);
    if (!command.statistics.empty())
        written.push_back(command.statistics);
    if (command.slices)
        written.push_back(command.slices->folder);
    for (std::size_t i = 0; i < written.size(); i++) {
        for (std::size_t k = 0; k < i; k++)
            if (IsSameFile(written[i], written[k]))
                return {kRequestFault, written[i] + ": is named for two outputs"};
        for (const std::string &input : command.inputs)
            if (IsSameFile(written[i], input))
                return {kRequestFault, written[i] + ": is both input and output"};
    }
    return {};
}

OwnFile::OwnFile(const std::string &name) : path(name)
{
    known = ReadIdentity();
}

Fault OwnFile::Write(const RunRecord &run)
{
    if (ReadIdentity() != known)
        return WriteFault(path, "another program has written it meanwhile");
    FreeNeighbourIndex(); // makes room in memory for the file
    Fault fault = WriteAggregate(path, run);
    if (!fault)
        written = true;
    known = ReadIdentity();
    return fault;
}

void OwnFile::Remove(bool mayremove)
{
    if (known.regular && ReadIdentity() == known && (written || mayremove))
        unlink(path.c_str());
}

OwnFile::Identity OwnFile::ReadIdentity() const
{
    struct stat about = {};
    if (stat(path.c_str(), &about) != 0)
        return {};
    return {true, S_ISREG(about.st_mode), about.st_dev, about.st_ino};
}
