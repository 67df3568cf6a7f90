#include <utility/XCode.h>

namespace
{

template <class R> R* recordAt(std::uintptr_t word)
{
    return reinterpret_cast<R*>(word);
}

String::StaticText<14> s_outOfMemory("Out of memory");

} // namespace

XCode XCode::OUT_OF_MEMORY(String& message)
{
    message = s_outOfMemory;
    return XCode(-1);
}

String const& XCode::message() const
{
    return isRecord() ? recordAt<Record>(word_)->message : String::EMPTY();
}

std::uintptr_t XCode::record(std::int32_t code, String const& message)
{
    return reinterpret_cast<std::uintptr_t>(new Record{code, message});
}

std::int32_t XCode::recordCode() const
{
    return recordAt<Record>(word_)->code;
}

void XCode::drop()
{
    delete recordAt<Record>(word_);
}
