#ifndef BENCH_PEERPORT_H
#define BENCH_PEERPORT_H

#include <cstdint>
#include <string>
#include <utility>

#include "Load.h"

namespace peers
{

/// A type of drivers, as unique as the library's identifiers. All zero: any.
struct Type
{
    std::uintptr_t words[2];

    bool operator==(Type const& other) const
    {
        return words[0] == other.words[0] && words[1] == other.words[1];
    }
    bool isAny() const { return (words[0] | words[1]) == 0; }
};

inline Type typeOf(load::Type type)
{
    return type == load::ANY ? Type{{0, 0}} : Type{{0x0a1b2c3d, std::uintptr_t(type)}};
}

/// A driver: 112 bytes, like the library's in this comparison.
class Port
{
public:
    Port(std::string name, Type type) : name_(std::move(name)), type_(type) {}
    virtual ~Port() = default;

    virtual std::string const& name() const { return name_; }
    virtual Type const& type() const { return type_; }
    void setRegistry(void* registry) { registry_ = registry; }

private:
    const std::string name_;
    const Type type_;
    [[maybe_unused]] void* registry_ = nullptr;
    [[maybe_unused]] unsigned char
        state_[112 - sizeof(void*) - sizeof(std::string) - sizeof(Type) - sizeof(void*)] = {};
};
static_assert(sizeof(Port) == 112, "as large as the library's driver");

} // namespace peers

#endif
