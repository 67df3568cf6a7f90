#include "FileOutput.h"

#include <cerrno>
#include <unistd.h>

FileOutput::FileOutput(int descriptor) : descriptor_(descriptor)
{
    setp(buffer_.data(), buffer_.data() + buffer_.size());
}

FileOutput::~FileOutput()
{
    drain();
}

FileOutput::int_type FileOutput::overflow(int_type character)
{
    if (!drain())
        return traits_type::eof();
    if (traits_type::eq_int_type(character, traits_type::eof()))
        return traits_type::not_eof(character);
    return sputc(traits_type::to_char_type(character));
}

int FileOutput::sync()
{
    return drain() ? 0 : -1;
}

bool FileOutput::drain()
{
    char const* at = pbase();
    while (error_ == 0 && at < pptr()) {
        ssize_t const written = ::write(descriptor_, at, static_cast<std::size_t>(pptr() - at));
        if (written >= 0)
            at += written;
        else if (errno != EINTR)
            error_ = errno;
    }
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    return error_ == 0;
}
