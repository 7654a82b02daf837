#include "zorvancow/core/cow_String.h"

aio_ostream& operator<<(aio_ostream& stream, cow_String const& value) {
    return stream.print(value.GetCString());
}
