#include "zorvanbase/omni_SystemMessage.h"

#include <atomic>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <locale.h>
#include <string.h>

namespace {

std::atomic<long> liveMessages{0};
std::atomic<long> messageCalls{0};

// The user's default language for messages, from the environment, whatever
// locale the program itself has set. The "C" texts when the environment
// names a locale that is not installed.
locale_t OpenDefaultMessageLocale() {
    locale_t locale = newlocale(LC_MESSAGES_MASK, "", static_cast<locale_t>(nullptr));
    if (locale == static_cast<locale_t>(nullptr))
        locale = newlocale(LC_MESSAGES_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

}  // namespace

char* omni_FormatSystemMessage(std::uint32_t code) {
    ++messageCalls;
    if (code > static_cast<std::uint32_t>(INT_MAX)) return nullptr;
    int const number = static_cast<int>(code);
    // The C library names every error number it has a text for.
    if (strerrorname_np(number) == nullptr) return nullptr;

    locale_t locale = OpenDefaultMessageLocale();
    if (locale == static_cast<locale_t>(nullptr)) return nullptr;
    char const* text = strerror_l(number, locale);
    std::size_t const length = std::strlen(text);
    char* message = static_cast<char*>(std::malloc(length + 1));
    if (message != nullptr) {
        std::memcpy(message, text, length + 1);
        ++liveMessages;
    }
    freelocale(locale);
    return message;
}

void omni_FreeSystemMessage(char* message) {
    if (message == nullptr) return;
    --liveMessages;
    std::free(message);
}

long omni_GetLiveSystemMessages() { return liveMessages; }
long omni_GetSystemMessageCalls() { return messageCalls; }
