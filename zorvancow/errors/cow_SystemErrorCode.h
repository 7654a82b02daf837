#ifndef ZORVANCOW_ERRORS_COW_SYSTEMERRORCODE_H
#define ZORVANCOW_ERRORS_COW_SYSTEMERRORCODE_H

// The record of a failed system call, and its text.
//
// A value holds either a system error code or, under the marker code
// ErrorNumberMarker, a C error number (errno). GetText turns it into a text
// from one of three sources, tried in this order:
//   1. the marker: the C runtime's strerror for the error number;
//   2. the library's own table of the 44 Windows Sockets codes (10004 to
//      11004), whose texts open with the symbolic name and the number, as in
//      "WSAEINTR (10004) Interrupted function call.";
//   3. every other code: the system's message table, in the user's default
//      language (omni_FormatSystemMessage; on Linux the C library's text for
//      that number).
// A socket code in the table never reaches the system. Texts from the runtime
// and the system come unchanged, nothing trimmed and nothing added. A code
// that the system has no message for gets "Unknown system error <code>", the
// code in unsigned decimal.

#include <cstdint>

#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_String.h"

class ZORVANCOW_API cow_SystemErrorCode {
public:
    // The code that says the value holds a C error number instead.
    static constexpr std::uint32_t ErrorNumberMarker = 0xFFFFFFFFu;

    // A system error code; `cErrorNumber` is read only when `systemCode` is the marker.
    explicit cow_SystemErrorCode(std::uint32_t systemCode, std::int32_t cErrorNumber = 0)
        : code(systemCode), errorNumber(cErrorNumber) {}
    // A C error number, as errno gives it.
    static cow_SystemErrorCode FromErrorNumber(std::int32_t errorNumber) {
        return cow_SystemErrorCode(ErrorNumberMarker, errorNumber);
    }

    std::uint32_t GetCode() const { return code; }
    std::int32_t GetErrorNumber() const { return errorNumber; }
    bool HoldsErrorNumber() const { return code == ErrorNumberMarker; }

    // A new string with the text of this error (see above); never fails and
    // never gives a value without text. The value itself does not change.
    // The runtime and system sources are read without a lock, so what the C
    // runtime says of strerror across threads holds here.
    cow_String GetText();

private:
    std::uint32_t code;
    std::int32_t errorNumber;
};

#endif
