// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/SessionBus.h"
#include "tests/desktop/VirtualDesktop.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct sd_bus;

namespace tallowmere::desktop {

/// What a screen reader is told about one object of a program: a window, a menu item, a picture.
///
/// Every answer is asked for anew. One that has gone, or that takes longer than patience(), answers with nothing: empty
/// texts, no children, no state. A value; the bus it came from outlives it. Threads: one at a time.
class Accessible final
{
public:
    /// The standard's numbers for the states looked at here.
    enum class State : unsigned
    {
        checked = 4,
        enabled = 8,
        focusable = 11,
        focused = 12,
        showing = 25,
        checkable = 41
    };

    Accessible() = default; ///< nothing
    Accessible(sd_bus *bus, std::string owner, std::string path)
        : m_bus(bus), m_owner(std::move(owner)), m_path(std::move(path))
    {}

    /// The unique name of its program on the bus.
    [[nodiscard]] const std::string &owner() const { return m_owner; }
    /// Found, and still there.
    [[nodiscard]] bool exists() const;
    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::string description() const;
    /// Its toolkit's English name of it: "menu item".
    [[nodiscard]] std::string role() const;
    [[nodiscard]] bool is(State state) const;
    [[nodiscard]] std::vector<Accessible> children() const;
    /// The name of the label that belongs to it; empty when it has none, or is its own.
    [[nodiscard]] std::string label() const;
    /// On the screen, in pixels.
    [[nodiscard]] Rectangle extents() const;
    /// What is written in it; for those that carry a text apart from their name.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] std::vector<std::string> actions() const;

    /// Asks for an action of actions() and doesn't wait for it: one that opens a dialog answers when that is closed.
    /// False when it isn't offered.
    bool perform(const std::string &action) const;
    /// Replaces what is written in it. False when it is refused.
    bool setText(const std::string &text) const;

    /// The first below it that answers to @p wanted, parents before their children; one that doesn't exist when there
    /// is none.
    [[nodiscard]] Accessible find(const std::function<bool(const Accessible &)> &wanted) const;
    [[nodiscard]] Accessible find(std::string_view role, std::string_view name) const;
    /// Of this role, in the order of the tree.
    [[nodiscard]] std::vector<Accessible> all(std::string_view role) const;
    /// It and all below it, one a line.
    [[nodiscard]] std::string described(int depth = 0) const;

    friend bool operator==(const Accessible &, const Accessible &) = default;

private:
    [[nodiscard]] std::string textProperty(const char *name) const;
    [[nodiscard]] std::string textAnswer(const char *method) const;

    sd_bus *m_bus = nullptr;
    std::string m_owner;
    std::string m_path;
};

/// The accessibility bus of a desktop with its registry, and a screen reader's connection to it. Ends with this object.
///
/// Programs started on @p bus from now on find it. Throws std::runtime_error when it does not come up.
class AccessibilityBus final
{
public:
    /// @p environment as that of the session bus, its address included. @p user: whose programs may come to it; only
    /// root can give it to another than itself.
    AccessibilityBus(const SessionBus &bus, const Environment &environment, std::optional<uid_t> user = std::nullopt);
    ~AccessibilityBus();
    AccessibilityBus(const AccessibilityBus &) = delete;
    AccessibilityBus &operator=(const AccessibilityBus &) = delete;

    /// As soon as the program has announced itself; nothing when it does not.
    [[nodiscard]] std::optional<Accessible> application(pid_t process) const;

private:
    [[nodiscard]] std::optional<pid_t> processOf(const std::string &name) const;

    std::unique_ptr<Process> m_launcher;
    sd_bus *m_bus = nullptr;
};

} // namespace tallowmere::desktop
