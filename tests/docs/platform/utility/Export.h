#ifndef PLATFORM_EXPORT_H
#define PLATFORM_EXPORT_H

#define UTILITY_EXPORT
#define UTILITY_PRINTF(text, first) __attribute__((format(printf, text, first)))

#endif
