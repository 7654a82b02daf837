#include "zorvancow/errors/cow_SystemErrorCode.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "zorvanbase/omni_SystemMessage.h"

namespace {

struct SocketErrorRow {
    std::uint32_t code;
    char const* text;
};

// Strictly ascending by code: the search depends on it.
SocketErrorRow const socketErrors[] = {
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

constexpr std::size_t socketErrorCount = sizeof socketErrors / sizeof socketErrors[0];
static_assert(socketErrorCount == 44, "the socket table has 44 rows");

// The difference of the codes as a 32-bit integer. It wraps only for a key
// far outside the table (top bit set), and such a key matches no row
// whichever way the search then turns.
int CompareSocketRows(void const* left, void const* right) {
    std::uint32_t const difference =
        static_cast<SocketErrorRow const*>(left)->code - static_cast<SocketErrorRow const*>(right)->code;
    return static_cast<std::int32_t>(difference);
}

}  // namespace

cow_String cow_SystemErrorCode::GetText() {
    if (code == ErrorNumberMarker) return cow_String(std::strerror(errorNumber));

    SocketErrorRow const key = {code, nullptr};
    auto const* row = static_cast<SocketErrorRow const*>(
        std::bsearch(&key, socketErrors, socketErrorCount, sizeof(SocketErrorRow), CompareSocketRows));
    if (row != nullptr) return cow_String(row->text);

    char* message = omni_FormatSystemMessage(code);
    if (message == nullptr) {
        char fallback[48];
        std::snprintf(fallback, sizeof fallback, "Unknown system error %lu", static_cast<unsigned long>(code));
        return cow_String(fallback);
    }
    cow_String text(message);
    omni_FreeSystemMessage(message);
    return text;
}
