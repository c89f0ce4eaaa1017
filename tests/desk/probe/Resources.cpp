// Counts Windows' resources that a program holds, because Wine's GetGuiResources returns nothing.
#include <windows.h>

#include <winternl.h>  // needs windows.h before it

#include <algorithm>
#include <bit>

#include "Commands.h"
#include "Inside.h"

namespace {

/// A process handle that is closed with this object.
class Process {
public:
    explicit Process(DWORD id)
        : handle_(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id)) {
        if (handle_ == nullptr) throw Failure{L"no such process"};
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() { CloseHandle(handle_); }

    [[nodiscard]] HANDLE get() const { return handle_; }

    void read(std::uintptr_t from, void* to, std::size_t bytes) const {
        SIZE_T done = 0;
        if (ReadProcessMemory(handle_, std::bit_cast<const void*>(from), to, bytes, &done) == FALSE ||
            done != bytes) {
            throw Failure{L"the process cannot be read"};
        }
    }

private:
    HANDLE handle_;
};

template <class Function>
Function ofLibrary(const wchar_t* library, const char* name) {
    const FARPROC address = GetProcAddress(GetModuleHandleW(library), name);
    if (address == nullptr) throw Failure{L"the library lacks a function"};
    return std::bit_cast<Function>(address);
}

using QueryProcess = LONG(WINAPI*)(HANDLE, ULONG, void*, ULONG, ULONG*);
using QuerySystem = LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*);

/// One place in the table of graphics objects that every process carries; free when its kind is 0.
struct GraphicsEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t kind;
    std::uint8_t flags;
    std::uint64_t userPointer;
};
static_assert(sizeof(GraphicsEntry) == 24);

std::int64_t graphicsObjects(const Process& process) {
    constexpr std::size_t kPlaces = 0x10000;
    constexpr std::uintptr_t kTableInBlock = sizeof(void*) == 8 ? 0xF8 : 0x94;
    PROCESS_BASIC_INFORMATION basic{};
    const auto query = ofLibrary<QueryProcess>(L"ntdll.dll", "NtQueryInformationProcess");
    if (query(process.get(), ProcessBasicInformation, &basic, sizeof basic, nullptr) != 0)
        throw Failure{L"the process says nothing about itself"};
    std::uintptr_t table = 0;
    process.read(std::bit_cast<std::uintptr_t>(basic.PebBaseAddress) + kTableInBlock, &table, sizeof table);
    if (table == 0) return 0;
    std::vector<GraphicsEntry> entries(kPlaces);
    process.read(table, entries.data(), entries.size() * sizeof(GraphicsEntry));
    return std::count_if(entries.begin(), entries.end(), [](const GraphicsEntry& e) { return e.kind != 0; });
}

/// Handles of files, keys, events and the like.
std::int64_t kernelHandles(DWORD process) {
    constexpr ULONG kHandleList = 16;
    constexpr LONG kTooShort = static_cast<LONG>(0xC0000004);
    struct Entry {
        ULONG owner;
        BYTE kind;
        BYTE flags;
        USHORT value;
        void* object;
        ULONG access;
    };
    const auto query = ofLibrary<QuerySystem>(L"ntdll.dll", "NtQuerySystemInformation");
    std::vector<char> list(0x10000);
    LONG result = 0;
    while ((result = query(kHandleList, list.data(), static_cast<ULONG>(list.size()), nullptr)) == kTooShort)
        list.resize(list.size() * 2);
    if (result != 0) throw Failure{L"no list of handles"};
    const ULONG count = *reinterpret_cast<const ULONG*>(list.data());
    const auto* first = reinterpret_cast<const Entry*>(list.data() + sizeof(void*));
    return std::count_if(first, first + count, [process](const Entry& e) { return e.owner == process; });
}

/// How many windows, menus, pointers and the like exist in the session, whoever made them. A new one takes a
/// free place, or else one after all others: menus are made until that happens, which counts the free places.
std::int64_t userObjects() {
    static unsigned last = 0;  // the highest place that was ever taken in this session
    constexpr unsigned kFirst = 0x20;
    constexpr int kFirstRound = 4000;  // more than there are ever free
    constexpr std::size_t kBehind = 16;
    std::vector<HMENU> made;
    std::size_t behind = 0;
    const bool firstRound = last == 0;
    while (firstRound ? made.size() < kFirstRound : behind < kBehind) {
        HMENU menu = CreateMenu();
        if (menu == nullptr) break;
        made.push_back(menu);
        const unsigned place = (LOWORD(std::bit_cast<std::uintptr_t>(menu)) - kFirst) / 2;
        if (place > last) {
            last = place;
            ++behind;
        }
    }
    const auto count = static_cast<std::int64_t>(last + 1 - made.size());
    for (HMENU menu : made)
        DestroyMenu(menu);
    return count;
}

}  // namespace

void countResources(const Words& words, Json& out) {
    auto* window = reinterpret_cast<HWND>(static_cast<INT_PTR>(number(words, 0)));
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const Process process(id);
    Inside inside(kHeapQuestion);
    const auto* heap = ask<HeapView>(inside, window);
    if (heap == nullptr) throw Failure{L"the program does not answer"};
    out.beginObject();
    out.field("handles", kernelHandles(id));
    out.field("gdi", graphicsObjects(process));
    out.field("user", userObjects());
    out.field("blocks", heap->blocks);
    out.field("heap", static_cast<std::int64_t>((heap->bytes + 512) / 1024));
    out.endObject();
}
