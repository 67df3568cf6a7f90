#include <utility/TOVA_UUID.h>

#include <new>

TOVA_UUID_Data TOVA_UUID::s_uuidDataInvalid = {{0, 0, 0, 0}, -1, "INVALID"};

void TOVA_UUID_Data::release()
{
    if (references == -1 || --references != 0)
        return;
    this->~TOVA_UUID_Data();
    ::operator delete(this);
}

TOVA_UUID TOVA_UUID::create(std::uint32_t word0, std::uint32_t word1, std::uint32_t word2,
                            std::uint32_t word3, char const* name)
{
    // The name stands behind the record, in the same block.
    char const* const text = name != nullptr ? name : "";
    const std::size_t size = std::strlen(text) + 1;
    char* const block = static_cast<char*>(::operator new(sizeof(TOVA_UUID_Data) + size));
    char* const copy = block + sizeof(TOVA_UUID_Data);
    std::memcpy(copy, text, size);
    return TOVA_UUID(new (block) TOVA_UUID_Data{{word0, word1, word2, word3}, 0, copy});
}

TOVA_UUID const& TOVA_UUID::INVALID()
{
    static const TOVA_UUID invalid;
    return invalid;
}
