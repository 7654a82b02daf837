#ifndef ZORVANBASE_OMNI_SYSTEMMESSAGE_H
#define ZORVANBASE_OMNI_SYSTEMMESSAGE_H

// The system's message table: the text the operating system keeps for one of
// its error codes, in the language of the user's default locale.
//
// On Linux the table is the C library's list of error numbers. A code is
// looked up as that number; the C library's generic "Unknown error" texts do
// not count as messages, so a code it has no entry for (any code above
// INT_MAX among them) gives nothing. The text comes as the library gives it,
// with nothing trimmed or added.

#include <cstdint>

#include "zorvan_export.h"

// A newly made, zero-terminated copy of the system's text for `code`, or null
// when the system has none (then nothing was allocated). The caller owns the
// text and gives it back with omni_FreeSystemMessage.
ZORVAN_EXPORT char* omni_FormatSystemMessage(std::uint32_t code);
// Frees a text from omni_FormatSystemMessage; null does nothing.
ZORVAN_EXPORT void omni_FreeSystemMessage(char* message);

// Inspection for tests: texts made and not yet freed, and lookups so far.
ZORVAN_EXPORT long omni_GetLiveSystemMessages();
ZORVAN_EXPORT long omni_GetSystemMessageCalls();

#endif
