// Moves a note: with the mouse, with the keyboard, and by whatever else moves windows. The place is stored
// once, when the move is over.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "note/bas_HookEasyMove.h"

/// The note that a mover moves.
class MovedNote {
public:
    virtual ~MovedNote() = default;
    /// Where the note stands as long as nobody moves it, in pixels.
    virtual PxRect place() const = 0;
    /// Whether its stored place can be seen. If not, place() is somewhere else.
    virtual bool isAtHome() const = 0;
    /// Puts the window to place().
    virtual void goHome() = 0;
    /// The window is where the note belongs from now on.
    virtual void takePlace() = 0;
    /// The same, and stores it.
    virtual void storePlace() = 0;
};

class NoteMover {
public:
    /// How notes behave on this desk while one of them is moved.
    struct Rules {
        bool alignAll = false;
        MoveHook::Desk snap;
    };
    /// One step of the keyboard. All lengths in pixels.
    struct KeyStep {
        int columns = 0;  ///< -1, 0 or 1
        int rows = 0;
        int length = 0;
        int strip = 0;  ///< height of the title, which must stay in sight
        std::span<const Monitor> monitors;
    };

    explicit NoteMover(MovedNote& note) : note_(note) {}

    /// Lets the mouse move the window until the button is up. The note may be gone when this returns.
    static void drag(HWND window, const Rules& rules);
    /// A move begins; until it ends, no change of the desk touches the note.
    void begin(HWND window);
    /// The move is over: the new place is stored. A note that is where it was stores nothing, so that one
    /// that is shown elsewhere while its monitor is away keeps its place.
    void end(HWND window);
    /// The whole drag is over, whatever was heard of its begin and end.
    void endDrag(HWND window);

    /// Moves by a key. Nothing is stored before endKeys().
    void step(HWND window, const Rules& rules, const KeyStep& by);
    void endKeys();

    /// The window has been moved. When it was neither the note nor the user's drag, the place is stored once
    /// the window has come to rest.
    void onMoved(HWND window);
    /// It has come to rest, or cannot wait any longer.
    void settle(HWND window);
    /// Monitors or the work area are others than before.
    void onDeskChanged(HWND window, std::uint64_t tick);

private:
    MovedNote& note_;
    int running_ = 0;  ///< moves within one another: a drag and the system's own loop
    PxRect before_;
    bool deskChanged_ = false;                ///< during the move
    bool byKeys_ = false;                     ///< moved by the keyboard, and that is not stored yet
    bool stray_ = false;                      ///< moved by others, and that is not stored yet
    std::optional<std::uint64_t> changedAt_;  ///< tick of the last change of the desk, in ms
};
