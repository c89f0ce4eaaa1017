// The program's dialog: one window that serves as message box, About box and alarm editor. A face that is
// called while another one is shown takes the window over; once it is answered, the one below returns as it
// was.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "alarm/AlarmFace.h"
#include "note/MsgBoxRules.h"
#include "note/NoteLayout.h"
#include "support/DialogGrid.h"
#include "support/Window.h"

struct fmsg {
    fmsg() = default;
    ~fmsg();
    fmsg(const fmsg&) = delete;
    fmsg& operator=(const fmsg&) = delete;

    std::function<std::vector<HWND>()> noteWindows;  ///< to be disabled while a face is shown
    std::function<HWND()> ownerWindow;               ///< the hidden tray window
    std::function<Now()> now;  ///< the clock of the alarm editor; the system's when empty
    /// Opens a link and returns why it could not, or nothing. The system's shell when empty.
    std::function<Text(const Text& target)> openTarget;

    /// Asks or informs, and returns the answer code once a button was pressed. `Prompt` may hold CR line
    /// breaks. Shown on the monitor of the window `over`, or where the user is working. It processes messages
    /// meanwhile, so the caller must check again whatever it holds.
    int MsgBoxExt(const Text& Prompt, long Buttons, const Text& Title = u"Kardel", HWND over = nullptr);

    /// The About box. One that is already open comes forward instead.
    void about();

    /// Lets the user edit the alarm of the note window `note`. Neither AlarmStart nor AlarmStop is set when
    /// the editor was closed without them, when the note has gone meanwhile, or when an editor is already
    /// open.
    EditorResult editAlarm(const AlarmRule& rule, HWND note, Now at);

    /// Whether a face is shown, with a loop of its own.
    bool open() const;
    /// Ends every face as its close box would, and destroys the window. The loops return after the caller has
    /// returned.
    void unload();
    /// Brings the face that is shown to the front.
    void bringForward();
    /// Shows the countdown of a note in its alarm editor, too.
    void showCountdown(HWND note, const Text& text);

    LRESULT onMessage(UINT message, WPARAM wp, LPARAM lp);
    static void onEscaped(UINT message) noexcept;

    HWND hwnd = nullptr;

private:
    /// One box or editor, from its call to its answer, on the stack of the call.
    struct Face {
        Text Prompt;
        Text Title;
        MsgButtons Buttons;
        int Answer = kAnswerNone;
        bool IsAbout = false;
        AlarmFace* editor = nullptr;  ///< null: a message
        HWND note = nullptr;          ///< the note whose alarm is edited
        HWND over = nullptr;          ///< decides which monitor
        HWND focus = nullptr;         ///< where the keyboard was when another face took the window
        POINT place{};                ///< and where the window was
        bool placed = false;
        bool done = false;
    };

    void run(Face& face);
    void loop(const Face& face);
    bool translate(MSG& message);
    Face* top() const;
    void present(Face& face);
    void presentMessage(const Face& face);
    void presentEditor(const Face& face);
    void rememberPlace();
    void keepPlace(Face& face) const;
    void finish(Face& face, int answer);
    void finishAll();
    void close();
    void disableNotes();
    void enableNotes();

    [[nodiscard]] bool createWindow();
    void createMessageControls();
    void showMessageControls(bool shown) const;
    void layoutMessage(const Face& face);
    int placeLinks(int left, int top) const;
    void placeButtons(int width, int footerTop) const;
    int buttonsWidth() const;
    void resizeTo(const Face& face, PxSize client);
    PxRect workArea(const Face& face) const;
    PxSize frame() const;

    void onCommand(int id, int code);
    void onClose();
    void onActivate(bool active);
    void openLink(const Text& target);
    void markDefault(int id) const;
    int defaultId() const;
    void focusFirst(const Face& face) const;
    void eraseTo(HDC dc) const;
    void drawItem(const DRAWITEMSTRUCT& drawn) const;
    void drawText(const DRAWITEMSTRUCT& drawn) const;
    void drawLink(const DRAWITEMSTRUCT& drawn) const;
    HBRUSH colorOf(HDC dc, HWND control) const;
    bool onSetCursor(HWND control) const;
    HWND item(int id) const { return GetDlgItem(hwnd, id); }

    DialogGrid grid_;
    std::vector<Face*> faces_;    ///< in the order of their calls; the last one that is not done is shown
    HWND before_ = nullptr;       ///< had the keyboard before the first face
    HWND focus_ = nullptr;        ///< has it while the dialog is active
    std::vector<HWND> disabled_;  ///< notes to be enabled again when the last face is gone
    UniqueFont linkFont_;
    HICON icon_ = nullptr;   ///< of mIcon; shared, never destroyed
    int textWidth_ = 0;      ///< pixels at which the lines of lblmsg break
    bool sizing_ = false;    ///< the box is resizing its own window
    int contentHeight_ = 0;  ///< pixels; the buttons are below it
};

/// Registers the window classes of the dialog and of its parts.
void registerDialogClasses();
