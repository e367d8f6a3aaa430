#pragma once

#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

class QWidget;

namespace script {

/// What a script cannot do with a control, in words for the person who wrote it.
class ControlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A control as a script sees it, whatever its kind. What a kind cannot do throws ControlError.
/// Rows and columns count from 1.
class Adapter {
public:
    virtual ~Adapter() = default;

    /// "a text box", for messages.
    [[nodiscard]] virtual std::string kind() const = 0;
    /// What the control shows; of a list the number of its rows.
    [[nodiscard]] virtual std::string text() const = 0;
    /// The lines that `print` writes: the text, or a list's rows under its captions.
    [[nodiscard]] virtual std::vector<std::string> lines() const { return {text()}; }
    /// A row's cells apart by tabs, with "!" before each red one.
    [[nodiscard]] virtual std::string rowText(int row) const;
    /// "checked" or "unchecked", "" where that makes no sense.
    [[nodiscard]] virtual std::string checkedState() const { return ""; }

    virtual void set(const std::string& text);
    virtual void click();
    virtual void doubleClick(int row);
    virtual void clickColumn(int column);
    virtual void selectRows(std::span<const int> rows);
    virtual void selectAll();
    virtual void selectNone();
    virtual void setCell(int row, int column, const std::string& text);

protected:
    [[noreturn]] void cannot(const std::string& what) const;
};

/// The adapter for a control's kind; throws ControlError for a kind that scripts do not know.
[[nodiscard]] std::unique_ptr<Adapter> adapterFor(QWidget& control);

/// Brings the pages of tabs to the front on which the control stands, then throws ControlError
/// unless a user could use it now.
void bringWithinReach(QWidget& control);

}  // namespace script
