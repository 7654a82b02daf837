// An editor's undo history: a text buffer as a list of lines, a synthetic
// editing session, and every version of the buffer kept.
//
// Each edit copies the buffer (one count) and writes one line or inserts or
// removes one, which copies a block of the list and makes one new string.
// At the end the program prints what the history costs by cow_Footprint, a
// diff between two distant versions, and the same history kept as
// std::vector<std::string> copies (every 100th version, scaled) for peer.
//
// undo_history [edits]   (200,000 by default)

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "zorvancow/zorvancow.h"

namespace {
using Clock = std::chrono::steady_clock;
double Seconds(Clock::time_point since) { return std::chrono::duration<double>(Clock::now() - since).count(); }

// One edit of the session, drawn from a fixed seed so both replays see the
// same edits: mostly a typed character near a cursor that wanders slowly,
// some newlines and backspaces, now and then a pasted block of lines or a
// jump elsewhere.
struct Edit {
    enum Kind { kType, kNewline, kBackspace, kPaste, kJump } kind;
    char letter;
    int lines;     // pasted lines
    int position;  // jump target, as a fraction of the buffer in 1/1000
};

std::vector<Edit> Session(int edits) {
    std::mt19937 random(2026);
    std::vector<Edit> session;
    for (int i = 0; i < edits; ++i) {
        unsigned const roll = random() % 1000;
        Edit edit{Edit::kType, static_cast<char>('a' + random() % 26), 1 + static_cast<int>(random() % 8),
                  static_cast<int>(random() % 1000)};
        if (roll >= 990) edit.kind = Edit::kJump;
        else if (roll >= 975) edit.kind = Edit::kPaste;
        else if (roll >= 925) edit.kind = Edit::kBackspace;
        else if (roll >= 875) edit.kind = Edit::kNewline;
        if (roll < 150) edit.letter = ' ';
        session.push_back(edit);
    }
    return session;
}

// The editor over any buffer of lines: `Buffer` gives its type and how a
// line is read, replaced, inserted and removed.
template <class Buffer>
struct Editor {
    typename Buffer::Type buffer;
    int line = 0;
    int column = 0;

    void Apply(Edit const& edit) {
        std::string text = Buffer::Read(buffer, line);
        switch (edit.kind) {
            case Edit::kType:
                text.insert(static_cast<std::size_t>(column++), 1, edit.letter);
                Buffer::Write(buffer, line, text);
                break;
            case Edit::kNewline:
                Buffer::Write(buffer, line, text.substr(0, static_cast<std::size_t>(column)));
                Buffer::Insert(buffer, line + 1, text.substr(static_cast<std::size_t>(column)));
                ++line, column = 0;
                break;
            case Edit::kBackspace:
                if (column > 0) {
                    text.erase(static_cast<std::size_t>(--column), 1);
                    Buffer::Write(buffer, line, text);
                } else if (line > 0) {
                    std::string const above = Buffer::Read(buffer, line - 1);
                    Buffer::Remove(buffer, line);
                    Buffer::Write(buffer, --line, above + text);
                    column = static_cast<int>(above.size());
                }
                break;
            case Edit::kPaste:
                for (int k = 0; k < edit.lines; ++k)
                    Buffer::Insert(buffer, line + 1 + k, "    pasted line " + std::to_string(k) + " of a block");
                line += edit.lines, column = 0;
                break;
            case Edit::kJump:
                line = static_cast<int>(static_cast<long>(Buffer::Count(buffer) - 1) * edit.position / 1000);
                column = static_cast<int>(Buffer::Read(buffer, line).size());
                break;
        }
    }
};

using Lines = cow_List<cow_String>;
struct CowBuffer {
    using Type = Lines;
    static std::string Read(Lines const& lines, int i) { return lines.ConstGet(i).GetCString(); }
    static void Write(Lines& lines, int i, std::string const& text) { lines.Get(i) = cow_String(text.c_str()); }
    static void Insert(Lines& lines, int i, std::string const& text) { lines.InsertAfter(i - 1, cow_String(text.c_str())); }
    static void Remove(Lines& lines, int i) { lines.RemoveIndex(i); }
    static int Count(Lines const& lines) { return lines.GetCount(); }
};

using StdLines = std::vector<std::string>;
struct StdBuffer {
    using Type = StdLines;
    static std::string Read(StdLines const& lines, int i) { return lines[static_cast<std::size_t>(i)]; }
    static void Write(StdLines& lines, int i, std::string const& text) { lines[static_cast<std::size_t>(i)] = text; }
    static void Insert(StdLines& lines, int i, std::string const& text) { lines.insert(lines.begin() + i, text); }
    static void Remove(StdLines& lines, int i) { lines.erase(lines.begin() + i); }
    static int Count(StdLines const& lines) { return static_cast<int>(lines.size()); }
};

// Heap bytes of a std::vector<std::string> copy: its slots, and the texts
// too long for the string's own buffer.
std::size_t StdBytes(StdLines const& lines) {
    std::size_t bytes = lines.capacity() * sizeof(std::string);
    for (std::string const& text : lines) {
        if (text.capacity() > std::string().capacity()) bytes += text.capacity() + 1;
    }
    return bytes;
}
}  // namespace

int main(int argc, char** argv) {
    int const edits = argc > 1 ? std::atoi(argv[1]) : 200000;
    if (edits < 2) return std::fprintf(stderr, "undo_history: give 2 edits or more\n"), 1;
    std::vector<Edit> const session = Session(edits);

    // The history: every version of the buffer, one count each.
    Clock::time_point start = Clock::now();
    Lines lines(cow_BlockLength::Balanced());
    lines.Append(cow_String());
    Editor<CowBuffer> editor{std::move(lines)};
    std::vector<Lines> versions;
    versions.reserve(static_cast<std::size_t>(edits) + 1);
    versions.push_back(editor.buffer);
    for (Edit const& edit : session) {
        editor.Apply(edit);
        versions.push_back(editor.buffer);
    }
    double const replay = Seconds(start);

    start = Clock::now();
    cow_FootprintBytes const footprint = cow_Footprint(versions.begin(), versions.end());
    double const measured = Seconds(start);
    double const perVersion = static_cast<double>(footprint.bytes) / static_cast<double>(versions.size());
    std::printf("undo_history: %d edits, %d lines at the end\n", edits, editor.buffer.GetCount());
    std::printf("cow_List<cow_String>: replay with every version kept %.3f s\n", replay);
    std::printf("  footprint of %zu versions: %.1f MB, %.0f bytes per version (%.1f%% shared), measured in %.3f s\n",
                versions.size(), static_cast<double>(footprint.bytes) / 1e6, perVersion,
                100.0 * static_cast<double>(footprint.sharedBytes) / static_cast<double>(footprint.bytes), measured);

    // What changed between a version a quarter in and one three quarters in.
    Lines const& early = versions[versions.size() / 4];
    Lines const& late = versions[versions.size() * 3 / 4];
    std::vector<int> changed;
    start = Clock::now();
    cow_Diff(early, late, [&changed](int i) { changed.push_back(i); });
    double const diffed = Seconds(start);
    std::printf("  diff of versions %zu and %zu: %zu of %d lines differ (first at line %d), in %.1f us\n",
                versions.size() / 4, versions.size() * 3 / 4, changed.size(), late.GetCount(),
                changed.empty() ? -1 : changed.front(), diffed * 1e6);

    // The peer: the same session on std::vector<std::string>, a deep copy
    // kept every 100th version, scaled to every version.
    start = Clock::now();
    Editor<StdBuffer> peer;
    peer.buffer.push_back(std::string());
    double copying = 0;
    std::size_t keptBytes = 0, kept = 0;
    std::vector<StdLines> copies;
    for (std::size_t i = 0; i < session.size(); ++i) {
        peer.Apply(session[i]);
        if (i % 100 == 0) {
            Clock::time_point const copyStart = Clock::now();
            copies.push_back(peer.buffer);
            copying += Seconds(copyStart);
            keptBytes += StdBytes(copies.back());
            ++kept;
        }
    }
    double const peerEdits = Seconds(start) - copying;
    std::printf("std::vector<std::string> copies: edits %.3f s + copies %.3f s x 100 = %.3f s for every version\n",
                peerEdits, copying, peerEdits + copying * 100);
    std::printf("  %.0f bytes per version (from %zu kept copies), %.0fx the cow_List history\n",
                static_cast<double>(keptBytes) / static_cast<double>(kept), kept,
                static_cast<double>(keptBytes) / static_cast<double>(kept) / perVersion);
    return 0;
}
