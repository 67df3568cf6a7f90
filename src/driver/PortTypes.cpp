#include <initializer_list>

#include <drvrepo/IDriver.h>

char const* const IDriver::Port::E1T1 = "e1t1";
char const* const IDriver::Port::BRI = "bri";
char const* const IDriver::Port::FXS = "fxs";
char const* const IDriver::Port::FXO = "fxo";

char const* IDriver::Port::NAME(Type type)
{
    switch (type) {
    case TYPE_UNKNOWN:
        return "(unknown)";
    case TYPE_E1T1:
        return E1T1;
    case TYPE_BRI:
        return BRI;
    case TYPE_FXS:
        return FXS;
    case TYPE_FXO:
        return FXO;
    }
    return "(invalid)";
}

IDriver::Port::Type IDriver::Port::TYPE(String const& text)
{
    for (Type type : {TYPE_E1T1, TYPE_BRI, TYPE_FXS, TYPE_FXO})
        if (text == NAME(type))
            return type;
    return TYPE_UNKNOWN;
}
