// A note that is moved, whether by mouse, by keyboard or by whatever else moves windows: what is stored and
// when. The place is stored once, when the move is over.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "note/Snapping.h"

/// The note that a mover moves.
class MovedNote {
public:
    virtual ~MovedNote() = default;
    /// The window on screen, in pixels.
    virtual PxRect window() const = 0;
    /// Whether it is there at all, and neither hidden nor minimised.
    virtual bool isOnScreen() const = 0;
    /// Moves the window's corner.
    virtual void moveWindow(int left, int top) = 0;
    /// Begins to wait for the window to come to rest, when settle() is called, or stops waiting.
    virtual void awaitRest(bool awaited) = 0;
    /// Where the note belongs, in pixels, unless somebody is moving it.
    virtual PxRect place() const = 0;
    /// Whether its stored place is visible. If not, place() is somewhere else.
    virtual bool isAtHome() const = 0;
    /// Moves the window to place().
    virtual void goHome() = 0;
    /// The window is where the note belongs from now on.
    virtual void takePlace() = 0;
    /// The same, and its place is stored.
    virtual void storePlace() = 0;
};

class NoteMover {
public:
    /// One step by keyboard. All lengths are in pixels.
    struct KeyStep {
        int columns = 0;  ///< -1, 0 or 1
        int rows = 0;
        int length = 0;
        int strip = 0;  ///< height of the title, which must stay in sight
        std::span<const Monitor> monitors;
    };

    explicit NoteMover(MovedNote& note) : note_(note) {}

    /// A move begins; until it ends, changes of the desk do not affect the note.
    void begin();
    /// The move is over, and the new place is stored. Nothing is stored if the note has not moved, so that a
    /// note that is shown elsewhere while its monitor is gone keeps its place.
    void end();
    /// The whole drag is over, whether or not its begin and end were reported.
    void endDrag();

    /// Moves the note by a key. Nothing is stored before endKeys().
    void step(const SnapRules& rules, const KeyStep& by);
    void endKeys();

    /// The window has been moved. If that was neither the note itself nor a drag, the place is stored once
    /// the window has come to rest.
    void onMoved();
    /// It has come to rest, or cannot wait any longer. `tick` is in ms, from a clock that nobody can set.
    void settle(std::uint64_t tick);
    /// Monitors or the work area have changed.
    void onDeskChanged(std::uint64_t tick);

private:
    MovedNote& note_;
    int running_ = 0;  ///< nested moves: a drag, and the system's own loop in it
    PxRect before_;
    bool deskChanged_ = false;                ///< during the move
    bool byKeys_ = false;                     ///< moved by the keyboard, and that is not stored yet
    bool stray_ = false;                      ///< moved by others, and that is not stored yet
    std::optional<std::uint64_t> changedAt_;  ///< tick of the last change of the desk, in ms
};
