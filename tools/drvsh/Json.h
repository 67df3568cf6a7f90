#ifndef DRVSH_JSON_H
#define DRVSH_JSON_H

#include <nlohmann/json.hpp>

#include <string>

/// JSON whose objects keep the order in which they are filled.
using Json = nlohmann::ordered_json;

/// `value` as a text: `indentation` blanks a level, or on one line if that is negative. Bytes that
/// are no UTF-8 become U+FFFD.
inline std::string jsonText(Json const& value, int indentation)
{
    return value.dump(indentation, ' ', false, Json::error_handler_t::replace);
}

#endif
