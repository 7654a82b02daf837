// Error texts: the marker goes to strerror, the socket table wins over the
// system, every other code asks the system, and a code it has no message for
// still gets a text.

#include "zorvancow/errors/cow_SystemErrorCode.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "zorvanbase/omni_SystemMessage.h"
#include "support/NoLeaks.h"

namespace {

std::string TextOf(cow_SystemErrorCode code) { return code.GetText().GetCString(); }

// What the system source says for `code`, or the text for a code without a
// message.
std::string SystemTextOf(std::uint32_t code) {
    char* message = omni_FormatSystemMessage(code);
    if (message == nullptr) return "Unknown system error " + std::to_string(code);
    std::string text = message;
    omni_FreeSystemMessage(message);
    return text;
}

TEST(SystemErrorCode, SocketTableEndsAndEveryRow) {
    long const callsAtStart = omni_GetSystemMessageCalls();
    EXPECT_EQ(TextOf(cow_SystemErrorCode(10004)), "WSAEINTR (10004) Interrupted function call.");
    EXPECT_EQ(TextOf(cow_SystemErrorCode(11004)), "WSANO_DATA (11004) Valid name, no data record of requested type.");
    EXPECT_EQ(TextOf(cow_SystemErrorCode(10058)), "WSAESHUTDOWN (10058) Cannot send after socket shutdown.");
    EXPECT_EQ(TextOf(cow_SystemErrorCode(10060)), "WSAETIMEDOUT (10060) Connection timed out.");

    // Every row is found by the search, which fails for rows out of order.
    int found = 0;
    for (std::uint32_t code = 10000; code <= 11010; ++code) {
        std::string const text = TextOf(cow_SystemErrorCode(code));
        if (text.compare(0, 3, "WSA") != 0) continue;
        ++found;
        EXPECT_NE(text.find(" (" + std::to_string(code) + ") "), std::string::npos) << text;
    }
    EXPECT_EQ(found, 44);
    EXPECT_EQ(omni_GetSystemMessageCalls(), callsAtStart + (11010 - 10000 + 1) - 44)
        << "a code in the table never reaches the system";
}

TEST(SystemErrorCode, CodesOutsideTheTableAskTheSystem) {
    long const callsAtStart = omni_GetSystemMessageCalls();
    // Between two rows, and below and above the table: the system has no
    // message for these numbers.
    for (std::uint32_t code : {10059u, 10003u, 11005u}) {
        EXPECT_EQ(TextOf(cow_SystemErrorCode(code)), "Unknown system error " + std::to_string(code));
    }
    // 0 is no marker: it goes through the table to the system, which has a
    // text for it.
    std::string const zero = TextOf(cow_SystemErrorCode(0));
    EXPECT_FALSE(zero.empty());
    EXPECT_EQ(zero, SystemTextOf(0));
    EXPECT_EQ(TextOf(cow_SystemErrorCode(2)), SystemTextOf(2));
    // A code with the top bit set is an absent code like any other.
    EXPECT_EQ(TextOf(cow_SystemErrorCode(0x80004005u)), "Unknown system error 2147500037");
    EXPECT_EQ(TextOf(cow_SystemErrorCode(0xFFFFFFFEu)), "Unknown system error 4294967294");
    EXPECT_EQ(omni_GetSystemMessageCalls(), callsAtStart + 3 + 2 + 2 + 2);
}

TEST(SystemErrorCode, MarkerSendsTheErrorNumberToStrerror) {
    long const callsAtStart = omni_GetSystemMessageCalls();
    EXPECT_EQ(TextOf(cow_SystemErrorCode::FromErrorNumber(2)), std::strerror(2));
    // A socket code as the error number is a C error number all the same.
    std::string const socketNumber = TextOf(cow_SystemErrorCode(cow_SystemErrorCode::ErrorNumberMarker, 10004));
    EXPECT_EQ(socketNumber, std::strerror(10004));
    EXPECT_EQ(socketNumber.find("WSA"), std::string::npos);
    EXPECT_EQ(omni_GetSystemMessageCalls(), callsAtStart);
}

TEST(SystemErrorCode, TextsAreNewValuesAndNothingLeaks) {
    testing_support::NoLeaks noLeaks;
    long const messagesAtStart = omni_GetLiveSystemMessages();
    {
        cow_SystemErrorCode code(10054);
        cow_String first = code.GetText();
        cow_String second = code.GetText();
        EXPECT_NE(first.GetHeader(), second.GetHeader());
        EXPECT_EQ(first.GetShareCount(), 1);
        EXPECT_EQ(code.GetCode(), 10054u) << "the value does not change";
        cow_String system = cow_SystemErrorCode(2).GetText();
        cow_String unknown = cow_SystemErrorCode(10059).GetText();
        EXPECT_GT(system.GetLength(), 0);
    }
    EXPECT_EQ(omni_GetLiveSystemMessages(), messagesAtStart);
}

}  // namespace
