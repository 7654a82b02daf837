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

// The socket table, row for row.
struct Row {
    std::uint32_t code;
    char const* text;
};
Row const socketTable[] = {
    {10004, "WSAEINTR (10004) Interrupted function call."},
    {10013, "WSAEACCES (10013) Permission denied."},
    {10014, "WSAEFAULT (10014) Bad address."},
    {10022, "WSAEINVAL (10022) Invalid argument."},
    {10024, "WSAEMFILE (10024) Too many open files."},
    {10035, "WSAEWOULDBLOCK (10035) Resource temporarily unavailable."},
    {10036, "WSAEINPROGRESS (10036) Operation now in progress."},
    {10037, "WSAEALREADY (10037) Operation already in progress."},
    {10038, "WSAENOTSOCK (10038) Socket operation on nonsocket."},
    {10039, "WSAEDESTADDRREQ (10039) Destination address required."},
    {10040, "WSAEMSGSIZE (10040) Message too long."},
    {10041, "WSAEPROTOTYPE (10041) Protocol wrong type for socket."},
    {10042, "WSAENOPROTOOPT (10042) Bad protocol option."},
    {10043, "WSAEPROTONOSUPPORT (10043) Protocol not supported."},
    {10044, "WSAESOCKTNOSUPPORT (10044) Socket type not supported."},
    {10045, "WSAEOPNOTSUPP (10045) Operation not supported."},
    {10046, "WSAEPFNOSUPPORT (10046) Protocol family not supported."},
    {10047, "WSAEAFNOSUPPORT (10047) Address family not supported by protocol family."},
    {10048, "WSAEADDRINUSE (10048) Address already in use."},
    {10049, "WSAEADDRNOTAVAIL (10049) Cannot assign requested address."},
    {10050, "WSAENETDOWN (10050) Network is down."},
    {10051, "WSAENETUNREACH (10051) Network is unreachable."},
    {10052, "WSAENETRESET (10052) Network dropped connection on reset."},
    {10053, "WSAECONNABORTED (10053) Software caused connection abort."},
    {10054, "WSAECONNRESET (10054) Connection reset by peer."},
    {10055, "WSAENOBUFS (10055) No buffer space available."},
    {10056, "WSAEISCONN (10056) Socket is already connected."},
    {10057, "WSAENOTCONN (10057) Socket is not connected."},
    {10058, "WSAESHUTDOWN (10058) Cannot send after socket shutdown."},
    {10060, "WSAETIMEDOUT (10060) Connection timed out."},
    {10061, "WSAECONNREFUSED (10061) Connection refused."},
    {10064, "WSAEHOSTDOWN (10064) Host is down."},
    {10065, "WSAEHOSTUNREACH (10065) No route to host."},
    {10067, "WSAEPROCLIM (10067) Too many processes."},
    {10091, "WSASYSNOTREADY (10091) Network subsystem is unavailable."},
    {10092, "WSAVERNOTSUPPORTED (10092) Winsock.dll version out of range."},
    {10093, "WSANOTINITIALISED (10093) Successful WSAStartup not yet performed."},
    {10101, "WSAEDISCON (10101) Graceful shutdown in progress."},
    {10107, "WSASYSCALLFAILURE (10107) System call failure."},
    {10109, "WSATYPE_NOT_FOUND (10109) Class type not found."},
    {11001, "WSAHOST_NOT_FOUND (11001) Host not found."},
    {11002, "WSATRY_AGAIN (11002) Nonauthoritative host not found."},
    {11003, "WSANO_RECOVERY (11003) This is a nonrecoverable error."},
    {11004, "WSANO_DATA (11004) Valid name, no data record of requested type."},
};

// Every text is a new value of its own, and the system's messages are given back.
TEST(SystemErrorCode, EverySocketCodeGivesItsRowAndNeverAsksTheSystem) {
    testing_support::NoLeaks noLeaks;
    long const callsAtStart = omni_GetSystemMessageCalls();
    for (Row const& row : socketTable) EXPECT_EQ(TextOf(cow_SystemErrorCode(row.code)), row.text);
    EXPECT_EQ(omni_GetSystemMessageCalls(), callsAtStart);
    cow_SystemErrorCode code(10054);
    cow_String const first = code.GetText();
    EXPECT_NE(first.GetHeader(), code.GetText().GetHeader());
    EXPECT_EQ(first.GetShareCount(), 1);
    EXPECT_EQ(code.GetCode(), 10054u) << "the value does not change";
}

TEST(SystemErrorCode, CodesOutsideTheTableAskTheSystemAndTheMarkerAsksStrerror) {
    testing_support::NoLeaks noLeaks;
    long const messagesAtStart = omni_GetLiveSystemMessages();
    long const callsAtStart = omni_GetSystemMessageCalls();
    // Between two rows, and below and above the table: the system has no
    // message for these numbers.
    for (std::uint32_t code : {10059u, 10003u, 11005u}) {
        EXPECT_EQ(TextOf(cow_SystemErrorCode(code)), "Unknown system error " + std::to_string(code));
    }
    // 0 is no marker: it goes through the table to the system, which has a
    // text for it.
    EXPECT_EQ(TextOf(cow_SystemErrorCode(0)), SystemTextOf(0));
    EXPECT_EQ(TextOf(cow_SystemErrorCode(2)), SystemTextOf(2));
    // A code with the top bit set is an absent code like any other.
    EXPECT_EQ(TextOf(cow_SystemErrorCode(0x80004005u)), "Unknown system error 2147500037");
    EXPECT_EQ(TextOf(cow_SystemErrorCode(0xFFFFFFFEu)), "Unknown system error 4294967294");
    // The marker sends the number to strerror and asks the system nothing;
    // a socket code as the error number is a C error number all the same.
    // (strerror's text for an unknown number lives until its next call, so
    // it is copied before the library calls it again.)
    for (int number : {2, 10004}) {
        std::string const expected = std::strerror(number);
        EXPECT_EQ(TextOf(cow_SystemErrorCode::FromErrorNumber(number)), expected);
    }
    EXPECT_EQ(omni_GetSystemMessageCalls(), callsAtStart + 3 + 2 + 2 + 2);
    EXPECT_EQ(omni_GetLiveSystemMessages(), messagesAtStart);
}

}  // namespace
