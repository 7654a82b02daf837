#include "zorvanmem/aio_ostream.h"

aio_ostream& aio_ostream::print(char const* text) {
    std::fputs(text, stream);
    return *this;
}
