// What a screen reader, which is another program as well, learns about a window.
#include <windows.h>
// Needs windows.h before it.
#include <oleacc.h>

#include "Commands.h"

namespace {

VARIANT childId(LONG id) {
    VARIANT child{};
    child.vt = VT_I4;
    child.lVal = id;
    return child;
}

std::wstring taken(IAccessible* object, HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, BSTR*),
                   LONG id) {
    BSTR text = nullptr;
    if ((object->*get)(childId(id), &text) != S_OK || text == nullptr) return {};
    std::wstring copy(text);
    SysFreeString(text);
    return copy;
}

/// The object behind a window; the caller releases it.
IAccessible* objectOf(const Words& words) {
    static const HRESULT ready = CoInitialize(nullptr);
    auto* const window = reinterpret_cast<HWND>(static_cast<INT_PTR>(number(words, 0)));
    void* found = nullptr;
    if (FAILED(ready) || FAILED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT),
                                                           __uuidof(IAccessible), &found))) {
        throw Failure{L"nothing accessible: " + word(words, 0)};
    }
    return static_cast<IAccessible*>(found);
}

void describe(IAccessible* object, LONG id, Json& out) {
    VARIANT role{};
    if (object->get_accRole(childId(id), &role) != S_OK) role.lVal = 0;
    out.field("role", role.lVal).field("name", taken(object, &IAccessible::get_accName, id));
    out.field("value", taken(object, &IAccessible::get_accValue, id));
    out.field("action", taken(object, &IAccessible::get_accDefaultAction, id));
}

}  // namespace

void describeAccessible(const Words& words, Json& out) {
    IAccessible* const object = objectOf(words);
    out.beginObject();
    describe(object, CHILDID_SELF, out);
    // For a window with child windows only their number, as each is asked by its own handle.
    LONG count = 0;
    if (object->get_accChildCount(&count) != S_OK) count = 0;
    out.field("children", count).key("elements").beginArray();
    for (LONG id = 1; id <= count; ++id) {
        IDispatch* child = nullptr;
        const HRESULT result = object->get_accChild(childId(id), &child);
        if (child != nullptr) child->Release();
        if (result != S_FALSE) continue;
        out.beginObject();
        describe(object, id, out);
        out.endObject();
    }
    out.endArray().endObject();
    object->Release();
}

void pressAccessible(const Words& words, Json& out) {
    IAccessible* const object = objectOf(words);
    out.truth(object->accDoDefaultAction(childId(static_cast<LONG>(number(words, 1)))) == S_OK);
    object->Release();
}
