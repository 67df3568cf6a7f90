#include <utility/Numbers.h>

std::uint32_t u_valueOf32(char const* text)
{
    if (text == nullptr || *text < '0' || *text > '9')
        return ABSENT_NUMBER;
    std::uint64_t value = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
        value = 10 * value + static_cast<std::uint64_t>(*text - '0');
        if (value > ABSENT_NUMBER)
            return ABSENT_NUMBER;
    }
    return static_cast<std::uint32_t>(value);
}
