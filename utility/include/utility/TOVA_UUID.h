#ifndef UTILITY_TOVA_UUID_H
#define UTILITY_TOVA_UUID_H

#include <cstdint>
#include <cstring>

#include <utility/Export.h>

/// The record behind an identifier. A static record has the count -1 and is neither counted nor
/// freed; any other belongs to the TOVA_UUID values that refer to it.
struct UTILITY_EXPORT TOVA_UUID_Data
{
    std::uint32_t words[4];  ///< the 16 bytes, each word little-endian
    std::int32_t references; ///< -1: static; otherwise how many values refer to the record
    char const* name;        ///< for people; zero-terminated, lives as long as the record

    /// Takes a further reference on a record that is counted.
    void addRef()
    {
        if (references != -1)
            ++references;
    }
    /// Gives one reference back; frees a counted record with the last one.
    void release();
};

/// An identifier: a handle to a shared record.
///
/// Equality    the same record, or equal 16 bytes; names and counts don't matter.
/// Locking     none; counts of records that are not static are plain integers.
class UTILITY_EXPORT TOVA_UUID
{
public:
    /// Refers to the record of "no identifier at all".
    TOVA_UUID() : data_(&s_uuidDataInvalid) {}
    /// Refers to a record and takes a reference on it (none on a static one).
    explicit TOVA_UUID(TOVA_UUID_Data* data) : data_(data != nullptr ? data : &s_uuidDataInvalid)
    {
        data_->addRef();
    }
    /// @{
    /// Shares the record of `other`.
    TOVA_UUID(TOVA_UUID const& other) : data_(other.data_) { data_->addRef(); }
    TOVA_UUID& operator=(TOVA_UUID const& other)
    {
        other.data_->addRef();
        data_->release();
        data_ = other.data_;
        return *this;
    }
    /// @}
    ~TOVA_UUID() { data_->release(); }

    /// A new identifier on a counted record of its own; `name` is copied (null: empty).
    static TOVA_UUID create(std::uint32_t word0, std::uint32_t word1, std::uint32_t word2,
                            std::uint32_t word3, char const* name);

    /// The identifier that stands for none; filters read it as "any".
    static TOVA_UUID const& INVALID();

    /// The record, good as long as this identifier.
    TOVA_UUID_Data const& data() const { return *data_; }
    /// The record's name, for people.
    char const* name() const { return data_->name; }

    /// @{
    /// The same record, or equal 16 bytes.
    bool operator==(TOVA_UUID const& other) const
    {
        return data_ == other.data_ ||
               std::memcmp(data_->words, other.data_->words, sizeof data_->words) == 0;
    }
    bool operator!=(TOVA_UUID const& other) const { return !(*this == other); }
    /// @}
    /// Whether this differs from INVALID.
    bool isValid() const
    {
        return data_ != &s_uuidDataInvalid &&
               std::memcmp(data_->words, s_uuidDataInvalid.words, sizeof data_->words) != 0;
    }

    /// The record of "no identifier at all".
    static TOVA_UUID_Data s_uuidDataInvalid;

private:
    TOVA_UUID_Data* data_;
};

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "identifiers compare as the bytes of little-endian words");

#endif
