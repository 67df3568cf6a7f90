#include "Identifiers.h"

#include <drvrepo/IChannelGroup.h>
#include <drvrepo/IDriver.h>
#include <drvrepo/IDriverRepository.h>
#include <drvrepo/IKernelDriverRepository.h>
#include <drvrepo/Identifiers.h>
#include <utility/IInfo.h>

#include <cctype>
#include <cstdio>

namespace
{
TOVA_UUID_Data E1T1_DATA = {{0x5a1c04e7, 0x4d7b9a23, 0xb1f0c6d8, 0x27e39514}, -1, "DID_E1T1"};
TOVA_UUID_Data BRI_DATA = {{0x8e62f1b3, 0x47a51c90, 0x9d3e7f2a, 0xc05b6481}, -1, "DID_BRI"};
TOVA_UUID_Data FXS_DATA = {{0x13d9a86c, 0x4be20f75, 0xa67481ce, 0x5f92d03b}, -1, "DID_FXS"};
TOVA_UUID_Data FXO_DATA = {{0xf7408d25, 0x41c36be9, 0x825acb17, 0x3ed6709f}, -1, "DID_FXO"};

using Function = TOVA_UUID const& (*)();
Function const KNOWN[] = {
    TOVA_UUID::INVALID,
    IID_Unknown,
    IInfo::IID,
    IDriver::IID,
    IDriverRepository::IID,
    IKernelDriverRepository::IID,
    IChannelGroup::IID,
    IDriver::DID_UNKNOWN,
    DID_ChannelGroup,
    DID_E1T1,
    DID_BRI,
    DID_FXS,
    DID_FXO,
    CID_Driver,
    CID_DriverRepository,
    CID_DriverRepositoryObserverAddLocal,
    CID_ChannelGroup,
    IDriver::CID_PROXY,
    IDriver::CID_STUB,
};

/// Reads 8-4-4-4-12 hexadecimal digits.
bool readWords(std::string const& text, std::uint32_t (&words)[4])
{
    if (text.size() != 36)
        return false;
    unsigned digits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool const hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        unsigned char const c = static_cast<unsigned char>(text[i]);
        if (hyphen ? c != '-' : std::isxdigit(c) == 0)
            return false;
        if (hyphen)
            continue;
        std::uint32_t const value =
            static_cast<std::uint32_t>(std::isdigit(c) != 0 ? c - '0' : std::tolower(c) - 'a' + 10);
        words[digits / 8] = words[digits / 8] << 4 | value;
        ++digits;
    }
    return true;
}
} // namespace

TOVA_UUID const& DID_E1T1()
{
    static TOVA_UUID const did(&E1T1_DATA);
    return did;
}

TOVA_UUID const& DID_BRI()
{
    static TOVA_UUID const did(&BRI_DATA);
    return did;
}

TOVA_UUID const& DID_FXS()
{
    static TOVA_UUID const did(&FXS_DATA);
    return did;
}

TOVA_UUID const& DID_FXO()
{
    static TOVA_UUID const did(&FXO_DATA);
    return did;
}

TOVA_UUID const& driverType(std::string const& word)
{
    switch (IDriver::Port::TYPE(word.c_str())) {
    case IDriver::Port::TYPE_E1T1:
        return DID_E1T1();
    case IDriver::Port::TYPE_BRI:
        return DID_BRI();
    case IDriver::Port::TYPE_FXS:
        return DID_FXS();
    case IDriver::Port::TYPE_FXO:
        return DID_FXO();
    case IDriver::Port::TYPE_UNKNOWN:
        break;
    }
    return IDriver::DID_UNKNOWN();
}

bool readIdentifier(std::string const& text, TOVA_UUID& identifier)
{
    std::uint32_t words[4] = {};
    TOVA_UUID read;
    bool const isUuid = readWords(text, words);
    if (isUuid)
        read = TOVA_UUID::create(words[0], words[1], words[2], words[3], text.c_str());
    for (Function known : KNOWN)
        if (isUuid ? known() == read : text == known().name()) {
            identifier = known();
            return true;
        }
    if (isUuid)
        identifier = read;
    return isUuid;
}

std::vector<std::string> identifierNames()
{
    std::vector<std::string> names;
    for (Function known : KNOWN)
        names.push_back(known().name());
    return names;
}

std::string uuidText(TOVA_UUID const& identifier)
{
    std::uint32_t const* const words = identifier.data().words;
    char text[40];
    std::snprintf(text, sizeof text, "%08x-%04x-%04x-%04x-%04x%08x", words[0], words[1] >> 16,
                  words[1] & 0xffffu, words[2] >> 16, words[2] & 0xffffu, words[3]);
    return text;
}
