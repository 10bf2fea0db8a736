// Tables of numbers, vectors and groups in an HDF5 file.

#pragma once

#include <algorithm>
#include <array>
#include <climits>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "archive/hdf5.h"
#include "geom/vector.h"

// Rows of a chunk: they are converted, compressed and checksummed together.
constexpr hsize_t kChunkRows = 16384;
constexpr unsigned kDeflateLevel = 1;
// Bytes of the largest chunk that is read, which is the largest that is written, a chunk of faces. Reads go by
// kChunkRows rows, and would decompress a larger chunk again each time.
constexpr hsize_t kLargestChunk = kChunkRows * 3 * 3 * sizeof(double);
// Largest number of bytes that one byte of deflated data expands to
constexpr hsize_t kMostInflation = 1032;

inline hsize_t RowLength(std::span<const hsize_t> row)
{
    hsize_t length = 1;
    for (const hsize_t size : row)
        length *= size;
    return length;
}

// Writes a table of `count` rows of the given shape. fill(i, numbers) sets the numbers of row i.
template<typename T, typename Fill>
void WriteTable(hid_t file, const char *name, hsize_t count, std::initializer_list<hsize_t> row, Fill fill)
{
    std::vector<hsize_t> shape = {count};
    shape.insert(shape.end(), row.begin(), row.end());
    const int rank = static_cast<int>(shape.size());
    const hsize_t length = RowLength(row);
    const Hdf5Object space(H5Screate_simple(rank, shape.data(), nullptr), H5Sclose, name);
    const Hdf5Object settings(H5Pcreate(H5P_DATASET_CREATE), H5Pclose, name);
    Require(H5Pset_obj_track_times(settings, false) >= 0, name);
    const hsize_t chunk = std::min(count, kChunkRows);
    if (count > 0) {
        std::vector<hsize_t> part = shape;
        part[0] = chunk;
        Require(H5Pset_chunk(settings, rank, part.data()) >= 0 && H5Pset_shuffle(settings) >= 0 &&
                    H5Pset_deflate(settings, kDeflateLevel) >= 0 && H5Pset_fletcher32(settings) >= 0,
                name);
    }
    const Hdf5Object table(
        H5Dcreate2(file, name, TypesOf<T>().file, space, H5P_DEFAULT, settings, H5P_DEFAULT), H5Dclose, name);
    std::vector<T> numbers(chunk * length);
    std::vector<hsize_t> start(shape.size());
    for (hsize_t first = 0; first < count; first += chunk) {
        shape[0] = std::min(chunk, count - first);
        start[0] = first;
        for (hsize_t i = 0; i < shape[0]; i++)
            fill(first + i, &numbers[i * length]);
        const Hdf5Object memory(H5Screate_simple(rank, shape.data(), nullptr), H5Sclose, name);
        Require(H5Sselect_hyperslab(space, H5S_SELECT_SET, start.data(), nullptr, shape.data(), nullptr) >= 0,
                name);
        Require(H5Dwrite(table, TypesOf<T>().memory, memory, space, H5P_DEFAULT, numbers.data()) >= 0, name);
    }
}

// Throws if `path` is missing, or if it or a group in it is a soft or external link, which could lead to any file.
inline void RequireOwn(hid_t parent, const std::string &path)
{
    for (std::size_t end = 0; end != std::string::npos;) {
        end = path.find('/', end + 1);
        const std::string part = path.substr(0, end);
        H5L_info_t link = {};
        Require(H5Lexists(parent, part.c_str(), H5P_DEFAULT) > 0 &&
                    H5Lget_info(parent, part.c_str(), &link, H5P_DEFAULT) >= 0,
                path, " is missing");
        Require(link.type == H5L_TYPE_HARD, path, " is only a link, and links are not followed");
    }
}

inline Hdf5Object OpenTable(hid_t file, const char *name)
{
    RequireOwn(file, name);
    return {H5Dopen2(file, name, H5P_DEFAULT), H5Dclose, name, " is missing"};
}

// Throws if a table's data are outside of its file, or use filters that WriteTable does not use. Call this before any
// other query of a table: for a virtual table the library would open the files that it refers to.
inline void RequirePlainStorage(hid_t creation, const char *name)
{
    const H5D_layout_t layout = H5Pget_layout(creation);
    Require((layout == H5D_COMPACT || layout == H5D_CONTIGUOUS || layout == H5D_CHUNKED) &&
                H5Pget_external_count(creation) == 0,
            name, " is stored in another place, which is not read");
    std::vector<H5Z_filter_t> allowed = {H5Z_FILTER_SHUFFLE, H5Z_FILTER_DEFLATE, H5Z_FILTER_FLETCHER32};
    const int filters = H5Pget_nfilters(creation);
    for (int i = 0; i < filters; i++) {
        unsigned flags = 0;
        std::size_t values = 0;
        const H5Z_filter_t filter =
            H5Pget_filter2(creation, static_cast<unsigned>(i), &flags, &values, nullptr, 0, nullptr, nullptr);
        Require(std::erase(allowed, filter) == 1, name,
                " is filtered by something else than shuffle, deflate and fletcher32, once each");
    }
}

// Throws if a table claims more data than its file can hold, or if a part of it has not been written.
inline void RequireAllWritten(hid_t table, hid_t creation, hid_t space, std::span<const hsize_t> shape,
                              hsize_t numberbytes, const char *name)
{
    const std::string about = name;
    const Hdf5Object file(H5Iget_file_id(table), H5Fclose, about, " cannot be read");
    hsize_t filebytes = 0;
    Require(H5Fget_filesize(file, &filebytes) >= 0, about, " cannot be read");
    const hsize_t most = H5Pget_nfilters(creation) > 0 ? kMostInflation * filebytes : filebytes;
    Require(RowLength(shape) * numberbytes <= most, about,
            ": " + std::to_string(shape[0]) + " rows are more than a file of " + std::to_string(filebytes) +
                " bytes can hold");
    if (shape[0] == 0)
        return;
    const std::string unwritten = " was not written to its end";
    if (H5Pget_layout(creation) != H5D_CHUNKED) {
        H5D_space_status_t status = H5D_SPACE_STATUS_NOT_ALLOCATED;
        Require(H5Dget_space_status(table, &status) >= 0 && status == H5D_SPACE_STATUS_ALLOCATED, about,
                unwritten);
        return;
    }
    std::vector<hsize_t> part(shape.size());
    Require(H5Pget_chunk(creation, static_cast<int>(part.size()), part.data()) ==
                    static_cast<int>(part.size()) &&
                std::find(part.begin(), part.end(), 0) == part.end() &&
                RowLength(part) <= kLargestChunk / numberbytes,
            about, " is cut into chunks that are too large");
    hsize_t chunks = 1, written = 0;
    for (std::size_t k = 0; k < part.size(); k++)
        chunks *= (shape[k] - 1) / part[k] + 1;
    Require(H5Dget_num_chunks(table, space, &written) >= 0 && written == chunks, about, unwritten);
}

// The number of rows of a table. Throws if its rows have another shape or type, or if not all of its data are in the
// file.
template<typename T>
hsize_t CountRows(hid_t file, const char *name, std::initializer_list<hsize_t> row)
{
    const std::string wrong = std::string(name) + " has the wrong type or shape";
    const Hdf5Object table = OpenTable(file, name);
    const Hdf5Object creation(H5Dget_create_plist(table), H5Pclose, wrong);
    RequirePlainStorage(creation, name);
    const Hdf5Object type(H5Dget_type(table), H5Tclose, wrong);
    const Hdf5Object space(H5Dget_space(table), H5Sclose, wrong);
    std::array<hsize_t, 1 + 2> shape = {};
    const int rank = static_cast<int>(1 + row.size());
    Require(IsStoredAs<T>(type) && H5Sget_simple_extent_ndims(space) == rank, wrong);
    Require(H5Sget_simple_extent_dims(space, shape.data(), nullptr) >= 0, wrong);
    Require(std::equal(row.begin(), row.end(), shape.begin() + 1), wrong);
    Require(shape[0] <= INT_MAX, wrong);
    RequireAllWritten(table, creation, space, std::span(shape).first(1 + row.size()), H5Tget_size(type),
                      name);
    return shape[0];
}

// Calls take(i, numbers) for each row of a table.
template<typename T, typename Take>
void ReadTable(hid_t file, const char *name, hsize_t count, std::initializer_list<hsize_t> row, Take take)
{
    const std::string damaged = std::string(name) + " is damaged";
    const Hdf5Object table = OpenTable(file, name);
    const Hdf5Object space(H5Dget_space(table), H5Sclose, damaged);
    std::vector<hsize_t> shape = {count};
    shape.insert(shape.end(), row.begin(), row.end());
    const int rank = static_cast<int>(shape.size());
    const hsize_t length = RowLength(row);
    const hsize_t chunk = std::min(count, kChunkRows);
    std::vector<T> numbers(chunk * length);
    std::vector<hsize_t> start(shape.size());
    for (hsize_t first = 0; first < count; first += chunk) {
        shape[0] = std::min(chunk, count - first);
        start[0] = first;
        const Hdf5Object memory(H5Screate_simple(rank, shape.data(), nullptr), H5Sclose, damaged);
        Require(H5Sselect_hyperslab(space, H5S_SELECT_SET, start.data(), nullptr, shape.data(), nullptr) >= 0,
                damaged);
        Require(H5Dread(table, TypesOf<T>().memory, memory, space, H5P_DEFAULT, numbers.data()) >= 0,
                damaged);
        for (hsize_t i = 0; i < shape[0]; i++)
            take(first + i, &numbers[i * length]);
    }
}

inline void PutVector(Vector v, double *numbers)
{
    numbers[0] = v.x;
    numbers[1] = v.y;
    numbers[2] = v.z;
}

inline Vector GetVector(const double *numbers)
{
    return {numbers[0], numbers[1], numbers[2]};
}

inline void WriteVectorAttribute(hid_t object, const char *name, Vector v)
{
    double numbers[3];
    PutVector(v, numbers);
    WriteAttribute(object, name, numbers, 3);
}

inline Vector ReadVectorAttribute(hid_t object, const char *name)
{
    double numbers[3];
    ReadAttribute(object, name, numbers, 3);
    return GetVector(numbers);
}

inline Hdf5Object CreateGroup(hid_t parent, const char *name)
{
    const Hdf5Object settings(H5Pcreate(H5P_GROUP_CREATE), H5Pclose, name);
    Require(H5Pset_obj_track_times(settings, false) >= 0, name);
    return {H5Gcreate2(parent, name, H5P_DEFAULT, settings, H5P_DEFAULT), H5Gclose, name};
}

inline Hdf5Object OpenGroup(hid_t parent, const std::string &name)
{
    RequireOwn(parent, name);
    return {H5Gopen2(parent, name.c_str(), H5P_DEFAULT), H5Gclose, name, " is missing"};
}

inline bool IsMissing(hid_t file, const char *name)
{
    return H5Lexists(file, name, H5P_DEFAULT) <= 0;
}

// Keeps the HDF5 library from printing errors and from loading filter plugins.
inline void SilenceLibrary()
{
    H5PLset_loading_state(0);
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}
