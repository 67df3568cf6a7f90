#include "Files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace
{
std::string reason()
{
    return errno != 0 ? std::strerror(errno) : "input/output error";
}
} // namespace

std::string readFile(std::string const& path, std::string& text)
{
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return reason();
    errno = 0;
    std::ostringstream read;
    // An empty file leaves the target failed; a folder opens like a file and fails only here.
    read << file.rdbuf();
    if (file.bad() || errno != 0)
        return reason();
    text = read.str();
    return "";
}

std::string writeFile(std::string const& path, std::string const& text)
{
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    return file ? "" : reason();
}

std::string replaceFile(std::string const& path, std::string const& text)
{
    std::error_code error;
    std::filesystem::path const target = std::filesystem::canonical(path, error);
    if (error)
        return error.message();
    std::string const beside = target.string() + ".new";
    std::string const problem = writeFile(beside, text);
    if (problem.empty()) {
        std::filesystem::permissions(beside, std::filesystem::status(target).permissions(), error);
        if (!error)
            std::filesystem::rename(beside, target, error);
    }
    if (!problem.empty() || error) {
        std::remove(beside.c_str());
        return problem.empty() ? error.message() : problem;
    }
    return "";
}
