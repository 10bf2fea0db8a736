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

// Rows of a table that are compressed and checksummed together, and converted together.
constexpr hsize_t kChunkRows = 16384;
constexpr unsigned kDeflateLevel = 1;

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

inline Hdf5Object OpenTable(hid_t file, const char *name)
{
    return {H5Dopen2(file, name, H5P_DEFAULT), H5Dclose, name, " is missing"};
}

// Number of rows of a table that has rows of the given shape; throws where it has not.
template<typename T>
hsize_t CountRows(hid_t file, const char *name, std::initializer_list<hsize_t> row)
{
    const std::string wrong = std::string(name) + " is no such table";
    const Hdf5Object table = OpenTable(file, name);
    const Hdf5Object type(H5Dget_type(table), H5Tclose, wrong);
    const Hdf5Object space(H5Dget_space(table), H5Sclose, wrong);
    std::array<hsize_t, 1 + 2> shape = {};
    Require(H5Tget_class(type) == H5Tget_class(TypesOf<T>().file) && H5Tget_size(type) <= sizeof(T) &&
                H5Sget_simple_extent_ndims(space) == static_cast<int>(1 + row.size()),
            wrong);
    Require(H5Sget_simple_extent_dims(space, shape.data(), nullptr) >= 0, wrong);
    Require(std::equal(row.begin(), row.end(), shape.begin() + 1), wrong);
    Require(shape[0] <= INT_MAX, wrong);
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
    return {H5Gopen2(parent, name.c_str(), H5P_DEFAULT), H5Gclose, name, " is missing"};
}

inline bool IsMissing(hid_t file, const char *name)
{
    return H5Lexists(file, name, H5P_DEFAULT) <= 0;
}

inline void SilenceLibrary()
{
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}
