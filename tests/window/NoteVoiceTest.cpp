// What a screen reader hears of notes, asked through the system's own accessibility library.
#include <functional>
#include <map>
#include <utility>

#include "tests/support/Plain.h"
#include "tests/window/Ear.h"
#include "tests/window/TestNotes.h"

namespace {

void letRing(TestNotes& desk) {
    desk.clock.at = instantOf({2026, 6, 15}, {12, 0, 5});
    desk.desk->Tick();
}

std::vector<HWND> visibleChildren(HWND form) {
    std::vector<HWND> found;
    for (HWND child = GetWindow(form, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if ((GetWindowLongPtrW(child, GWL_STYLE) & static_cast<LONG_PTR>(WS_VISIBLE)) != 0)
            found.push_back(child);
    }
    return found;
}

TEST(AccessibleNote, SaysItsTitleItsStateAndItsText) {
    NoteRecord note = armed(u"Tea");
    note.iconized = true;
    TestNotes desk(false, {note});
    fpost& tea = desk.note(1);
    EXPECT_EQ(Ear(tea.hwnd).name(), u"Tea, alarm set, iconized");
    EXPECT_EQ(Ear(tea.hwnd).value(), u"body of Tea");
    desk.desk->settings.RestoreWhenPlay = true;
    letRing(desk);
    EXPECT_EQ(Ear(tea.hwnd).name(), u"Tea, alarm rings");
    tea.commands.mnuTopmost();
    EXPECT_EQ(Ear(tea.hwnd).name(), u"Tea, alarm rings, always on top");
    tea.place.resizer.setMode(true);
    EXPECT_EQ(Ear(tea.hwnd).name(), u"Tea, alarm rings, always on top, being resized");
}

TEST(AccessibleNote, EveryPartInEveryStateHasANameAndARole) {
    NoteRecord iconized = plainNote(u"Small");
    iconized.iconized = true;
    NoteRecord empty;
    TestNotes desk(false, {plainNote(u"Shopping"), iconized, armed(u"Tea"), empty, armed(u"Rings")});
    desk.note(3).alarm.rule.due = instantOf({2026, 6, 15}, {18, 0, 0});
    letRing(desk);
    ASSERT_TRUE(desk.note(5).Alarming() && !desk.note(3).Alarming());
    for (const fpost* note : desk.desk->Notes) {
        EXPECT_FALSE(Ear(note->hwnd).name().empty());
        for (const HWND part : visibleChildren(note->hwnd)) {
            const Ear ear(part);
            const std::string which = plain(note->Titolo()) + " " + std::to_string(GetDlgCtrlID(part));
            EXPECT_FALSE(ear.name().empty()) << which;
            const bool isButton = part == note->pic;
            const bool isText = part == note->lbl || part == note->nota || part == note->pic_time;
            const Role wanted = part == note->lbl2   ? Role::Toolbar
                                : part == note->pic2 ? Role::Grip
                                : isButton           ? Role::PushButton
                                                     : Role::StaticText;
            EXPECT_TRUE(isText || wanted != Role::StaticText) << which;
            EXPECT_EQ(ear.role(), wanted) << which;
        }
    }
    EXPECT_EQ(Ear(desk.note(1).lbl).name(), u"Shopping");
    EXPECT_EQ(Ear(desk.note(1).nota).name(), u"body of Shopping");
    EXPECT_EQ(Ear(desk.note(4).lbl).name(), u"Untitled");
    EXPECT_EQ(Ear(desk.note(4).nota).name(), u"No text");
    EXPECT_EQ(Ear(desk.note(3).pic_time).name(), windowText(desk.note(3).pic_time));
    EXPECT_EQ(Ear(desk.note(5).pic_time).name(), u"The alarm rings");
}

TEST(AccessibleNote, TheStripHoldsTwoButtonsThatCanBeFoundAndPressed) {
    TestNotes desk(true, {plainNote(u"a")});
    fpost& note = desk.note(1);
    ASSERT_EQ(Ear(note.lbl2).elements(), 2);
    EXPECT_EQ(Ear(note.lbl2, 1).name(), u"Iconize");
    EXPECT_EQ(Ear(note.lbl2, 2).name(), u"Close");
    for (const LONG element : {1L, 2L}) {
        EXPECT_EQ(Ear(note.lbl2, element).role(), Role::PushButton);
        const RECT place = Ear(note.lbl2, element).place();
        EXPECT_GT(place.right, place.left);
        EXPECT_EQ(Ear(note.lbl2).elementAt({(place.left + place.right) / 2, (place.top + place.bottom) / 2}),
                  element);
    }
    EXPECT_TRUE(Ear(note.lbl2, 1).press());
    pumpPending();
    EXPECT_TRUE(note.Iconized());
    EXPECT_EQ(Ear(note.lbl2, 1).name(), u"Restore");
    EXPECT_TRUE(Ear(note.lbl2, 2).press());
    pumpPending();
    EXPECT_TRUE(note.Closed());
    EXPECT_TRUE(Ear(note.lbl2, 3).name().empty());
}

TEST(AccessibleNote, ThePicturesAndTheTextDoWhatTheyAreFor) {
    TestNotes desk(false, {plainNote(u"a")});
    fpost& note = desk.note(1);
    int questions = 0;
    desk.desk->host.ask = [&questions](const Text&, long, const Text&) {
        ++questions;
        return IDNO;
    };
    EXPECT_TRUE(Ear(note.pic).press());
    EXPECT_EQ(questions, 0) << "the press must not wait for the answer";
    pumpPending();
    EXPECT_EQ(questions, 1);
    EXPECT_TRUE(Ear(note.pic2).press());
    pumpPending();
    EXPECT_TRUE(note.place.resizer.isOn());
    EXPECT_TRUE(Ear(note.nota).press());
    pumpPending();
    EXPECT_TRUE(note.editing.bodyBeingEdited());
    EXPECT_FALSE(Ear(note.lbl).press());
}

/// Stands for Windows' list of names, which Wine does not have.
class NameBook final : public IAccPropServices, public IClassFactory {
public:
    NameBook() {
        EXPECT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
        const CLSID kind{0xb5f8350b, 0x0548, 0x48b1, {0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7}};
        EXPECT_EQ(CoRegisterClassObject(kind, static_cast<IClassFactory*>(this), CLSCTX_INPROC_SERVER,
                                        REGCLS_MULTIPLEUSE, &cookie_),
                  S_OK);
    }
    ~NameBook() {
        CoRevokeClassObject(cookie_);
        CoUninitialize();
    }
    NameBook(const NameBook&) = delete;
    NameBook& operator=(const NameBook&) = delete;

    std::map<HWND, Text> names;
    int written = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID kind, void** object) noexcept override {
        const bool factory = kind == __uuidof(IClassFactory) || kind == __uuidof(IUnknown);
        *object = factory ? static_cast<void*>(static_cast<IClassFactory*>(this))
                          : static_cast<void*>(static_cast<IAccPropServices*>(this));
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID kind, void** object) noexcept override {
        return QueryInterface(kind, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

    HRESULT STDMETHODCALLTYPE SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID what,
                                             LPCWSTR text) noexcept override {
        EXPECT_EQ(static_cast<LONG>(object), OBJID_CLIENT);
        EXPECT_EQ(child, static_cast<DWORD>(CHILDID_SELF));
        EXPECT_EQ(what.Data1, 0x608d3df8U) << "the name";
        names[window] = fromWide(text);
        ++written;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ClearHwndProps(HWND window, DWORD, DWORD, const MSAAPROPID* what,
                                             int count) noexcept override {
        EXPECT_EQ(what->Data1, 0x608d3df8U);
        EXPECT_EQ(count, 1);
        names.erase(window);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                            AnnoScope) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHwndProp(HWND, DWORD, DWORD, MSAAPROPID, VARIANT) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                                AnnoScope) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**,
                                                        DWORD*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*,
                                                          DWORD*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                                 AnnoScope) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*,
                                                           DWORD*) noexcept override {
        return E_NOTIMPL;
    }

private:
    DWORD cookie_ = 0;
};

TEST(AccessibleNote, TheEditorsAreWindowsOwnControlsWithANameAdded) {
    NameBook book;
    TestNotes desk(true, {plainNote(u"a")});
    fpost& note = desk.note(1);
    note.EditForm();
    EXPECT_EQ(book.written, 0) << "nobody is listening";
    const HWND body = note.editing.txtNota();
    Ear(body).name();
    Ear(body).name();
    EXPECT_EQ(book.names[body], u"Text");
    EXPECT_EQ(book.written, 1);
    note.EditCaption();
    EXPECT_FALSE(book.names.contains(body)) << "gone with its window";
    const HWND title = note.editing.txtTitle();
    Ear(title).name();
    EXPECT_EQ(book.names[title], u"Title");
    desk.desk->Teardown();
    EXPECT_TRUE(book.names.empty()) << "gone with their windows";
}

TEST(AccessibleNote, AnObjectThatOutlivesItsNoteSaysNothingAboutIt) {
    TestNotes desk(false, {plainNote(u"a"), plainNote(u"b")});
    const Ear note(desk.note(1).hwnd);
    const Ear strip(desk.note(1).lbl2, 1);
    EXPECT_EQ(note.name(), u"a");
    desk.note(1).DeleteForm(true);
    pumpPending();
    EXPECT_NE(note.name(), u"a");
    EXPECT_TRUE(note.value().empty());
    EXPECT_TRUE(strip.name().empty());
    EXPECT_FALSE(strip.press());
}

TEST(AccessibleNote, ListenersHearOfWhatChanges) {
    GlobalSettings keep;
    keep.DontDeleteWhenPlay = true;
    TestNotes desk(false, {armed(u"a")}, keep);
    fpost& note = desk.note(1);
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"iconized", [&] { note.toggleIconized(); }},
        {"restored", [&] { note.toggleIconized(); }},
        {"on top", [&] { note.commands.mnuTopmost(); }},
        {"resizing", [&] { note.place.resizer.setMode(true); }},
        {"rings", [&] { letRing(desk); }},
        {"stopped", [&] { note.SoundStop(); }},
    };
    for (const auto& [what, change] : changes) {
        const Events events;
        change();
        EXPECT_TRUE(events.has(EVENT_OBJECT_NAMECHANGE, note.hwnd)) << what;
        EXPECT_EQ(events.has(EVENT_SYSTEM_ALERT, note.hwnd), what == std::string("rings")) << what;
    }
}

}  // namespace
