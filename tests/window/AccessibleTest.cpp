// What a screen reader hears of notes and dialogs, asked through the system's own accessibility library.
// Where that knows too little under Wine, the tests look at what it goes by for native controls: classes,
// texts, order and Tab stops.
#include <map>
#include <set>

#include "resources/resource.h"
#include "support/Number.h"
#include "tests/window/DialogTest.h"
#include "tests/window/Ear.h"
#include "tests/window/TestNotes.h"

namespace {

// --- Notes ------------------------------------------------------------------------------------------------

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

// --- Dialogs ----------------------------------------------------------------------------------------------

/// The label that Windows' own objects use as a field's name: the nearest static text before it, visible or
/// not, with no other field between them.
Text labelOf(HWND field) {
    for (HWND before = GetWindow(field, GW_HWNDPREV); before != nullptr;
         before = GetWindow(before, GW_HWNDPREV)) {
        if ((SendMessageW(before, WM_GETDLGCODE, 0, 0) & DLGC_STATIC) != 0) return windowText(before);
        const LONG_PTR style = GetWindowLongPtrW(before, GWL_STYLE);
        if ((style & static_cast<LONG_PTR>(WS_VISIBLE)) != 0 &&
            (style & static_cast<LONG_PTR>(WS_TABSTOP)) != 0)
            break;
    }
    return {};
}

Text classOf(HWND window) {
    wchar_t name[64]{};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return Text(fromWide(name));
}

/// The field's name, from the program or, for a native control, from Windows.
Text nameOf(HWND field) {
    const Text kind = classOf(field);
    if (kind == u"ComboBox") return labelOf(field);
    return Ear(field).name();
}

class AccessibleDialog : public Fmsg {
protected:
    /// Every control that Tab currently reaches, in Tab order.
    std::vector<HWND> tabStops() const {
        std::vector<HWND> stops;
        HWND next = nullptr;
        while ((next = GetNextDlgTabItem(dialog.hwnd, next, FALSE)) != nullptr) {
            if (!stops.empty() && next == stops.front()) break;
            stops.push_back(next);
        }
        return stops;
    }
    /// Whether the dialog is there and has the keyboard, which the window manager gives it a little later.
    Script::Condition ready(const char* caption) {
        return [this, caption] { return shown(caption)() && IsChild(dialog.hwnd, GetFocus()) != FALSE; };
    }
    /// What must hold for every face: each stop has a name, nothing that is only shown is a stop, and the
    /// focus is visible.
    void checkFace() const {
        EXPECT_EQ(Ear(dialog.hwnd).role(), Role::Dialog);
        EXPECT_EQ(Ear(dialog.hwnd).name(), windowText(dialog.hwnd));
        const std::vector<HWND> stops = tabStops();
        EXPECT_FALSE(stops.empty());
        std::set<char16_t> letters;
        for (const HWND stop : stops) {
            const int id = GetDlgCtrlID(stop);
            EXPECT_FALSE(nameOf(stop).empty()) << id;
            EXPECT_NE(plain(classOf(stop)), "Static") << id;
            EXPECT_EQ(SendMessageW(stop, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS, 0) << id;
            const Text caption = windowText(stop);
            const std::size_t mark = caption.find(u'&');
            if (mark != Text::npos) {
                EXPECT_TRUE(letters.insert(caption[mark + 1]).second) << plain(caption);
            }
        }
        EXPECT_NE(std::find(stops.begin(), stops.end(), GetFocus()), stops.end())
            << "the keyboard is in a control that Tab does not reach";
    }
};

TEST_F(AccessibleDialog, EveryBoxCanBeReadAndAnswered) {
    for (const long buttons :
         {long{MB_OK}, long{MB_OKCANCEL} | MB_ICONERROR, long{MB_YESNO} | MB_ICONQUESTION,
          long{MB_RETRYCANCEL} | MB_ICONEXCLAMATION, long{MB_YESNO} | MB_DEFBUTTON2}) {
        Script script(dialog);
        script.when(ready("Delete"), [this, buttons] {
            checkFace();
            EXPECT_EQ(text(ID_LBLMSG), "Sure?");
            EXPECT_EQ(text(ID_MICON).empty(), (buttons & MB_ICONMASK) == 0);
            closeBox();
        });
        dialog.MsgBoxExt(u"Sure?", buttons, u"Delete");
    }
}

TEST_F(AccessibleDialog, TheAboutBoxNamesItsLinks) {
    Script script(dialog);
    script.when(ready("About"), [this] {
        checkFace();
        EXPECT_GE(tabStops().size(), 2U);
        closeBox();
    });
    dialog.about();
}

class AccessibleEditor : public AccessibleDialog {
protected:
    void edit(const AlarmRule& rule, const std::function<void()>& look) {
        const HWND note = addNote();
        Script script(dialog);
        script.when(ready("Set alarm"), [&] {
            checkFace();
            look();
            closeBox();
        });
        dialog.editAlarm(rule, note, someMonday());
    }
    static AlarmRule tomorrow() {
        AlarmRule rule;
        rule.AlarmDate = u"16/06/2026";
        rule.AlarmTime = u"08:30:00";
        rule.due = instantOf({2026, 6, 16}, {8, 30, 0});
        return rule;
    }
};

TEST_F(AccessibleEditor, SaysTheDateAndTheTimeOfItsFields) {
    edit(tomorrow(), [this] {
        EXPECT_EQ(Ear(item(ID_DATA)).name(), u"Date");
        EXPECT_EQ(Ear(item(ID_DATA)).value(), u"16/06/2026, day");
        SendMessageW(item(ID_DATA), WM_KEYDOWN, VK_RIGHT, 0);
        EXPECT_EQ(Ear(item(ID_DATA)).value(), u"16/06/2026, month");
        SendMessageW(item(ID_DATA), WM_KEYDOWN, VK_RIGHT, 0);
        EXPECT_EQ(Ear(item(ID_DATA)).value(), u"16/06/2026, year");
        EXPECT_EQ(Ear(item(ID_HDATE)).value(), u"16/06/2026");
        const std::pair<int, const char16_t*> bars[] = {
            {ID_HDATE, u"Date"}, {ID_HORE, u"Hours"}, {ID_HMIN, u"Minutes"}, {ID_HSEC, u"Seconds"}};
        for (const auto& [bar, name] : bars) {
            EXPECT_EQ(Ear(item(bar)).name(), name);
            // Whatever Windows' own object would use as a label must say the same, or nothing.
            const Text label = labelOf(item(bar));
            EXPECT_TRUE(label.empty() || label == name) << plain(label);
        }
        SendMessageW(dialog.hwnd, WM_HSCROLL, SB_LINERIGHT, reinterpret_cast<LPARAM>(item(ID_HORE)));
        EXPECT_EQ(Ear(item(ID_HORE)).value(), u"09:30:00");
    });
}

TEST_F(AccessibleEditor, NamesItsListsEvenWhenTheyChange) {
    edit(tomorrow(), [this] {
        EXPECT_EQ(labelOf(item(ID_CBOREPEAT)), u"Repeat every:");
        EXPECT_EQ(labelOf(item(ID_CBODAY)), u"Weekday");
    });
    AlarmRule repeating = tomorrow();
    repeating.RepeatNumber = 5;
    repeating.RepeatEvery = u"mm";
    edit(repeating, [this] { EXPECT_EQ(labelOf(item(ID_CBODAY)), u"Unit"); });
}

TEST_F(AccessibleEditor, TabReachesTheSevenDaysOnlyWhenTheyAreShown) {
    edit(tomorrow(), [this] { EXPECT_EQ(tabStops().size(), 10U); });
    AlarmRule week = tomorrow();
    week.AlarmWeekday = 8;
    edit(week, [this] { EXPECT_EQ(tabStops().size(), 17U); });
    AlarmRule daily = tomorrow();
    daily.eachday = true;
    edit(daily, [this] { EXPECT_EQ(tabStops().size(), 9U) << "a daily pattern has no date to step by"; });
}

TEST_F(AccessibleEditor, TheButtonThatEnterPressesStaysMarkedWhereverTabGoes) {
    const auto marked = [this](int button) {
        return (GetWindowLongPtrW(item(button), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
    };
    const HWND note = addNote();
    Script script(dialog);
    script.when(focused(ID_DATA), [this] { key(VK_TAB); });
    script.when(focused(ID_HDATE), [this, marked] {
        EXPECT_TRUE(marked(ID_BTNOK));
        SetFocus(item(ID_BTNOK));
        key(VK_TAB);
    });
    script.when(focused(ID_BTNCANCEL), [this, marked] {
        EXPECT_TRUE(marked(ID_BTNCANCEL));
        EXPECT_FALSE(marked(ID_BTNOK));
        closeBox();
    });
    dialog.editAlarm(tomorrow(), note, someMonday());
}

TEST_F(AccessibleEditor, ListenersHearOfADateThatChanges) {
    edit(tomorrow(), [this] {
        const Events events;
        SendMessageW(item(ID_DATA), WM_KEYDOWN, VK_RIGHT, 0);
        EXPECT_TRUE(events.has(EVENT_OBJECT_VALUECHANGE, item(ID_DATA)));
    });
}

}  // namespace
