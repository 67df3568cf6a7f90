#ifndef UTILITY_EXPORT_H
#define UTILITY_EXPORT_H

/// Marks what libutility.so exports; everything else stays hidden in it.
#define UTILITY_EXPORT __attribute__((visibility("default")))

/// Lets the compiler check the arguments of a printf-like function against its format.
/// `text` and `first` count from 1, the object itself included; `first` is 0 for a va_list.
#define UTILITY_PRINTF(text, first) __attribute__((format(printf, text, first)))

#endif
