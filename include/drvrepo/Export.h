#ifndef DRVREPO_EXPORT_H
#define DRVREPO_EXPORT_H

/// Marks what libdrvrepo.so exports; everything else stays hidden in it.
#define DRVREPO_EXPORT __attribute__((visibility("default")))

#endif
