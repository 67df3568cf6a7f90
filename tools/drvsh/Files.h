#ifndef DRVSH_FILES_H
#define DRVSH_FILES_H

#include <string>

/// Reads a whole file into `text`, byte by byte as it is. Returns the reason why it can't be read,
/// or the empty text.
std::string readFile(std::string const& path, std::string& text);

/// Writes a whole file. Returns the reason why it can't be written, or the empty text.
std::string writeFile(std::string const& path, std::string const& text);

/// Puts a new text into a file that is there: all of it, or, on failure, nothing. It keeps its
/// permissions. Returns the reason why that can't be done, or the empty text.
std::string replaceFile(std::string const& path, std::string const& text);

#endif
