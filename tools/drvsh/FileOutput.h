#ifndef DRVSH_FILEOUTPUT_H
#define DRVSH_FILEOUTPUT_H

#include <array>
#include <streambuf>

/// Writes to an open file, and remembers why it couldn't: a stream only knows that.
class FileOutput : public std::streambuf
{
public:
    /// The file stays open and its owner's.
    explicit FileOutput(int descriptor);
    FileOutput(FileOutput const&) = delete;
    FileOutput& operator=(FileOutput const&) = delete;
    ~FileOutput() override;

    /// The number of the error that ended writing; 0 if there was none.
    int error() const { return error_; }

protected:
    int_type overflow(int_type character) override;
    int sync() override;

private:
    bool drain();

    int descriptor_;
    int error_ = 0;
    std::array<char, 8192> buffer_;
};

#endif
