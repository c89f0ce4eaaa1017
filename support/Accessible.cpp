#include "support/Accessible.h"

#include <oleacc.h>

#include <atomic>

#include "support/SystemLibrary.h"

static_assert(static_cast<LONG>(Role::Grip) == ROLE_SYSTEM_GRIP);
static_assert(static_cast<LONG>(Role::Dialog) == ROLE_SYSTEM_DIALOG);
static_assert(static_cast<LONG>(Role::Toolbar) == ROLE_SYSTEM_TOOLBAR);
static_assert(static_cast<LONG>(Role::StaticText) == ROLE_SYSTEM_STATICTEXT);
static_assert(static_cast<LONG>(Role::PushButton) == ROLE_SYSTEM_PUSHBUTTON);
static_assert(static_cast<LONG>(Role::SpinButton) == ROLE_SYSTEM_SPINBUTTON);

namespace {

constexpr LONG kSelf = CHILDID_SELF;

/// Windows' functions for screen readers, loaded when they are first needed.
struct Library {
    decltype(&LresultFromObject) lresultFromObject = nullptr;
    decltype(&CreateStdAccessibleObject) createStandard = nullptr;
    decltype(&SysAllocStringLen) allocate = nullptr;
    decltype(&CoCreateInstance) createInstance = nullptr;

    bool complete() const {
        return lresultFromObject != nullptr && createStandard != nullptr && allocate != nullptr;
    }
};

Library loadLibrary() {
    Library library;
    const HMODULE oleacc = systemLibrary(u"oleacc.dll");
    library.lresultFromObject = systemFunction<decltype(&LresultFromObject)>(oleacc, "LresultFromObject");
    library.createStandard =
        systemFunction<decltype(&CreateStdAccessibleObject)>(oleacc, "CreateStdAccessibleObject");
    library.allocate =
        systemFunction<decltype(&SysAllocStringLen)>(systemLibrary(u"oleaut32.dll"), "SysAllocStringLen");
    const HMODULE com = systemLibrary(u"ole32.dll");
    library.createInstance = systemFunction<decltype(&CoCreateInstance)>(com, "CoCreateInstance");
    const auto initialize = systemFunction<decltype(&CoInitialize)>(com, "CoInitialize");
    if (initialize != nullptr) initialize(nullptr);  // for the rest of the program's life
    return library;
}

const Library& library() {
    static const Library loaded = loadLibrary();
    return loaded;
}

// Windows' list of what is said about windows besides what they say themselves, and its property for names.
constexpr CLSID kAnnotations{0xb5f8350b, 0x0548, 0x48b1, {0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7}};
constexpr IID kAnnotationsKind{0x6e26e776, 0x04f0, 0x495d, {0x80, 0xe4, 0x33, 0x30, 0x35, 0x2e, 0x31, 0x69}};
constexpr MSAAPROPID kName{0x608d3df8, 0x8128, 0x4aa7, {0xa4, 0x28, 0xf5, 0x5e, 0x49, 0x26, 0x72, 0x91}};

constexpr LPCWSTR kNamed = L"Kardel.Named";  ///< property of a control that is in the list

/// Opens the list for one change.
template <class Write>
void annotate(const Write& write) {
    if (library().createInstance == nullptr) return;
    void* book = nullptr;
    if (FAILED(
            library().createInstance(kAnnotations, nullptr, CLSCTX_INPROC_SERVER, kAnnotationsKind, &book))) {
        return;
    }
    auto* const open = static_cast<IAccPropServices*>(book);
    write(*open);
    open->Release();
}

LONG elementOf(const VARIANT& child) {
    return child.vt == VT_I4 ? child.lVal : -1;
}

/// Windows' own object for a window, with different answers for what the voice knows.
class SpokenWindow final : public IAccessible {
public:
    SpokenWindow(HWND window, const Voice& voice, IAccessible* standard)
        : window_(window), voice_(voice), standard_(standard) {}
    SpokenWindow(const SpokenWindow&) = delete;
    SpokenWindow& operator=(const SpokenWindow&) = delete;

    // --- IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID kind, void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        if (kind == __uuidof(IUnknown) || kind == __uuidof(IDispatch) || kind == __uuidof(IAccessible)) {
            *object = static_cast<IAccessible*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        // Windows lists the child windows, and says which window this is.
        const bool children = voice_.elements == 0 && kind == __uuidof(IEnumVARIANT);
        if (!children && kind != __uuidof(IOleWindow)) return E_NOINTERFACE;
        return standard_->QueryInterface(kind, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    // --- IDispatch: nobody calls its methods by name
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        if (count != nullptr) *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override {
        return E_NOTIMPL;
    }

    // --- What is said about it
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) noexcept override {
        if (!isMine(child)) return standard_->get_accName(child, name);
        const Spoken said = ask(child);
        return said.name.empty() ? standard_->get_accName(child, name) : give(said.name, name);
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) noexcept override {
        return isMine(child) ? give(ask(child).value, value) : standard_->get_accValue(child, value);
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) noexcept override {
        const Role said = isMine(child) ? ask(child).role : Role::Standard;
        if (said == Role::Standard) return standard_->get_accRole(child, role);
        role->vt = VT_I4;
        role->lVal = static_cast<LONG>(said);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) noexcept override {
        if (!isMine(child)) return standard_->get_accDefaultAction(child, action);
        return give(ask(child).press == 0 ? TextView() : TextView(u"Press"), action);
    }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) noexcept override {
        if (!isMine(child)) return standard_->accDoDefaultAction(child);
        const unsigned press = ask(child).press;
        if (press == 0) return DISP_E_MEMBERNOTFOUND;
        // Not from inside the call: what the press opens would keep the caller waiting.
        const HWND form = GetAncestor(window_, GA_ROOT);
        return PostMessageW(form, WM_COMMAND, press, 0) != FALSE ? S_OK : E_FAIL;
    }

    // --- Elements: drawn in the window, with no window of their own
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) noexcept override {
        if (voice_.elements == 0) return standard_->get_accChildCount(count);
        *count = voice_.elements;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) noexcept override {
        if (isSelf(child) || voice_.elements == 0) return standard_->get_accChild(child, object);
        *object = nullptr;
        return isElement(child) ? S_FALSE : E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) noexcept override {
        if (!isElement(child)) return standard_->get_accState(child, state);
        VARIANT self{};
        self.vt = VT_I4;
        return standard_->get_accState(self, state);
    }
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                          VARIANT child) noexcept override {
        if (!isElement(child)) return standard_->accLocation(left, top, width, height, child);
        const RECT area = ask(child).area;
        POINT corner{area.left, area.top};
        ClientToScreen(window_, &corner);
        *left = corner.x;
        *top = corner.y;
        *width = area.right - area.left;
        *height = area.bottom - area.top;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) noexcept override {
        POINT at{x, y};
        ScreenToClient(window_, &at);
        for (LONG element = 1; element <= voice_.elements; ++element) {
            VARIANT one{};
            one.vt = VT_I4;
            one.lVal = element;
            const RECT area = ask(one).area;
            if (PtInRect(&area, at) == FALSE) continue;
            *child = one;
            return S_OK;
        }
        return standard_->accHitTest(x, y, child);
    }
    HRESULT STDMETHODCALLTYPE accNavigate(LONG way, VARIANT start, VARIANT* end) noexcept override {
        if (voice_.elements == 0) return standard_->accNavigate(way, start, end);
        LONG to = 0;
        if (way == NAVDIR_FIRSTCHILD && isSelf(start)) to = 1;
        if (way == NAVDIR_LASTCHILD && isSelf(start)) to = voice_.elements;
        if (way == NAVDIR_NEXT && isElement(start)) to = start.lVal + 1;
        if (way == NAVDIR_PREVIOUS && isElement(start)) to = start.lVal - 1;
        if (to == 0 && isSelf(start)) return standard_->accNavigate(way, start, end);
        end->vt = VT_EMPTY;
        if (to < 1 || to > voice_.elements) return S_FALSE;
        end->vt = VT_I4;
        end->lVal = to;
        return S_OK;
    }

    // --- Left to Windows
    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) noexcept override {
        return standard_->get_accParent(parent);
    }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* text) noexcept override {
        return isElement(child) ? give({}, text) : standard_->get_accDescription(child, text);
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* text) noexcept override {
        return isElement(child) ? give({}, text) : standard_->get_accHelp(child, text);
    }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR*, VARIANT, LONG*) noexcept override {
        return DISP_E_MEMBERNOTFOUND;
    }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* text) noexcept override {
        return isElement(child) ? give({}, text) : standard_->get_accKeyboardShortcut(child, text);
    }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) noexcept override {
        return standard_->get_accFocus(child);
    }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) noexcept override {
        return standard_->get_accSelection(children);
    }
    HRESULT STDMETHODCALLTYPE accSelect(LONG how, VARIANT child) noexcept override {
        return isElement(child) ? E_INVALIDARG : standard_->accSelect(how, child);
    }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) noexcept override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) noexcept override { return DISP_E_MEMBERNOTFOUND; }

private:
    ~SpokenWindow() { standard_->Release(); }

    static bool isSelf(const VARIANT& child) { return elementOf(child) == kSelf; }
    bool isElement(const VARIANT& child) const {
        return elementOf(child) >= 1 && elementOf(child) <= voice_.elements;
    }
    bool isMine(const VARIANT& child) const { return isSelf(child) || isElement(child); }
    Spoken ask(const VARIANT& child) const noexcept {
        try {
            return voice_.say(window_, static_cast<int>(elementOf(child)));
        } catch (...) {
            return {};  // no memory for an answer: it is left to Windows
        }
    }
    /// S_FALSE: there is nothing to say.
    static HRESULT give(TextView text, BSTR* out) noexcept {
        *out = nullptr;
        const auto allocate = library().allocate;
        if (text.empty() || allocate == nullptr) return S_FALSE;
        *out = allocate(wideData(text), static_cast<UINT>(text.size()));
        return *out == nullptr ? E_OUTOFMEMORY : S_OK;
    }

    std::atomic<ULONG> references_{1};
    HWND window_;
    const Voice& voice_;
    IAccessible* standard_;
};

}  // namespace

LRESULT answerAccessible(HWND window, WPARAM wp, LPARAM lp, const Voice& voice) {
    if (static_cast<LONG>(lp) != OBJID_CLIENT || !library().complete()) {
        return DefWindowProcW(window, WM_GETOBJECT, wp, lp);
    }
    void* standard = nullptr;
    if (FAILED(library().createStandard(window, OBJID_CLIENT, __uuidof(IAccessible), &standard))) return 0;
    auto* const object = new SpokenWindow(window, voice, static_cast<IAccessible*>(standard));
    const LRESULT answer = library().lresultFromObject(__uuidof(IAccessible), wp, object);
    object->Release();
    return answer;
}

void nameControl(HWND control, const Text& name) {
    if (GetPropW(control, kNamed) != nullptr) return;
    // Set first, as writing may query the control again.
    if (SetPropW(control, kNamed, control) == FALSE) return;
    annotate([&](IAccPropServices& book) {
        book.SetHwndPropStr(control, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, kName, wide(name));
    });
}

void forgetName(HWND control) {
    if (RemovePropW(control, kNamed) == nullptr) return;
    annotate([&](IAccPropServices& book) {
        book.ClearHwndProps(control, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, &kName, 1);
    });
}

void tellNameChanged(HWND window) {
    NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window, OBJID_CLIENT, kSelf);
}

void tellValueChanged(HWND window) {
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, window, OBJID_CLIENT, kSelf);
}

void tellAlert(HWND window) {
    NotifyWinEvent(EVENT_SYSTEM_ALERT, window, OBJID_CLIENT, kSelf);
}
