#ifndef ZORVANMEM_AIO_OSTREAM_H
#define ZORVANMEM_AIO_OSTREAM_H

#include <cstdio>

#include "zorvan_export.h"

// The heap sibling's output stream: a thin writer over a C stream.
class ZORVAN_EXPORT aio_ostream {
public:
    // Writes to `target`, which the caller keeps open for the life of this object.
    explicit aio_ostream(std::FILE* target) : stream(target) {}

    // Writes the zero-terminated `text` as it stands and returns this stream.
    aio_ostream& print(char const* text);

private:
    std::FILE* stream;
};

#endif
