// HDF5 objects that close themselves, and attributes. Functions of the HDF5 library return a negative number when
// they fail.

#pragma once

#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include <hdf5.h>

// A file cannot be read or written, or its content is wrong.
class Hdf5Fault : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The content of a file does not fit into memory.
class TooLarge : public Hdf5Fault
{
public:
    using Hdf5Fault::Hdf5Fault;
};

class Hdf5Object
{
public:
    // Throws an Hdf5Fault with the text `about` + `what` if `opened` is negative. The texts are views: making them
    // cannot throw, so an object that has been opened is always closed.
    Hdf5Object(hid_t opened, herr_t (*closer)(hid_t), std::string_view about, std::string_view what = "")
        : id(opened), close(closer)
    {
        if (id < 0)
            throw Hdf5Fault(std::string(about).append(what));
    }
    ~Hdf5Object() { close(id); }
    Hdf5Object(const Hdf5Object &) = delete;
    Hdf5Object &operator=(const Hdf5Object &) = delete;
    operator hid_t() const { return id; }

private:
    hid_t id;
    herr_t (*close)(hid_t);
};

// Throws an Hdf5Fault with the text `about` + `what` unless `holds`.
inline void Require(bool holds, std::string_view about, std::string_view what = "")
{
    if (!holds)
        throw Hdf5Fault(std::string(about).append(what));
}

// The HDF5 types of a number in memory and in files, which are little-endian on every machine
struct Hdf5Types {
    hid_t memory, file;
    const char *name;
};

template<typename T>
Hdf5Types TypesOf()
{
    if constexpr (std::is_same_v<T, double>)
        return {H5T_NATIVE_DOUBLE, H5T_IEEE_F64LE, "float64"};
    else if constexpr (std::is_same_v<T, int>)
        return {H5T_NATIVE_INT32, H5T_STD_I32LE, "int32"};
    else if constexpr (std::is_same_v<T, uint32_t>)
        return {H5T_NATIVE_UINT32, H5T_STD_U32LE, "uint32"};
    else {
        static_assert(std::is_same_v<T, uint64_t>);
        return {H5T_NATIVE_UINT64, H5T_STD_U64LE, "uint64"};
    }
}

// Whether T holds every number of a stored type: same class, same sign, and not more bytes
template<typename T>
bool IsStoredAs(hid_t type)
{
    const hid_t own = TypesOf<T>().file;
    return H5Tget_class(type) == H5Tget_class(own) && H5Tget_size(type) <= sizeof(T) &&
           (H5Tget_class(own) != H5T_INTEGER || H5Tget_sign(type) == H5Tget_sign(own));
}

// Writes an attribute of one number, or of a row of numbers.
template<typename T>
void WriteAttribute(hid_t object, const std::string &name, const T *values, hsize_t count)
{
    const Hdf5Object space(count == 1 ? H5Screate(H5S_SCALAR) : H5Screate_simple(1, &count, nullptr),
                           H5Sclose, name);
    const Hdf5Object attribute(
        H5Acreate2(object, name.c_str(), TypesOf<T>().file, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose, name);
    Require(H5Awrite(attribute, TypesOf<T>().memory, values) >= 0, name);
}

template<typename T>
void WriteAttribute(hid_t object, const std::string &name, T value)
{
    WriteAttribute(object, name, &value, 1);
}

// Writes a text attribute of fixed length, since texts of variable length have no checksum.
inline void WriteText(hid_t object, const std::string &name, const std::string &value)
{
    const Hdf5Object type(H5Tcopy(H5T_C_S1), H5Tclose, name);
    Require(H5Tset_size(type, value.empty() ? 1 : value.size()) >= 0, name);
    Require(H5Tset_strpad(type, H5T_STR_NULLPAD) >= 0 && H5Tset_cset(type, H5T_CSET_UTF8) >= 0, name);
    const Hdf5Object space(H5Screate(H5S_SCALAR), H5Sclose, name);
    const Hdf5Object attribute(H5Acreate2(object, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT),
                               H5Aclose, name);
    Require(H5Awrite(attribute, type, value.empty() ? "" : value.data()) >= 0, name);
}

// Reads an attribute of `count` numbers; throws if it is missing or has another type or size.
template<typename T>
void ReadAttribute(hid_t object, const std::string &name, T *values, hssize_t count)
{
    Require(H5Aexists(object, name.c_str()) > 0, name, " is missing");
    const Hdf5Object attribute(H5Aopen(object, name.c_str(), H5P_DEFAULT), H5Aclose, name, " cannot be read");
    const Hdf5Object type(H5Aget_type(attribute), H5Tclose, name, " cannot be read");
    const Hdf5Object space(H5Aget_space(attribute), H5Sclose, name, " cannot be read");
    const std::string wanted = count == 1 ? "a number" : std::to_string(count) + " numbers";
    Require(IsStoredAs<T>(type) && H5Sget_simple_extent_npoints(space) == count, name,
            " is not " + wanted + " of type " + TypesOf<T>().name);
    Require(H5Aread(attribute, TypesOf<T>().memory, values) >= 0, name, " cannot be read");
}

template<typename T>
T ReadNumber(hid_t object, const std::string &name)
{
    T value;
    ReadAttribute(object, name, &value, 1);
    return value;
}

inline std::string ReadText(hid_t object, const std::string &name)
{
    constexpr std::size_t longest = 4096;
    Require(H5Aexists(object, name.c_str()) > 0, name, " is missing");
    const Hdf5Object attribute(H5Aopen(object, name.c_str(), H5P_DEFAULT), H5Aclose, name, " cannot be read");
    const Hdf5Object type(H5Aget_type(attribute), H5Tclose, name, " cannot be read");
    const Hdf5Object space(H5Aget_space(attribute), H5Sclose, name, " cannot be read");
    Require(H5Tget_class(type) == H5T_STRING && H5Tis_variable_str(type) == 0 &&
                H5Tget_size(type) <= longest && H5Sget_simple_extent_npoints(space) == 1,
            name, " has the wrong type or shape");
    std::string text(H5Tget_size(type) + 1, '\0');
    Require(H5Aread(attribute, type, text.data()) >= 0, name, " cannot be read");
    text.resize(strlen(text.c_str()));
    return text;
}
