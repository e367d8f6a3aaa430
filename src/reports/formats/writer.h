#pragma once

#include <deque>
#include <memory>
#include <optional>

#include "platform/base/notcopied.h"
#include "platform/files/draft.h"
#include "reports/base/content.h"

namespace reports {

/// A content whose beginning is known before it is read: what its columns need, and whether it has
/// remarks, is judged by that.
class KnownContent : public Content {
public:
    explicit KnownContent(Content& content);

    [[nodiscard]] const Report& report() const override { return content_.report(); }
    [[nodiscard]] const Options& options() const override { return content_.options(); }
    [[nodiscard]] const Heading& heading() const override { return content_.heading(); }
    [[nodiscard]] std::size_t size() const override { return content_.size(); }
    std::optional<Item> next() override;

    /// What is known and not read yet: all of a report of up to 2,000 items.
    [[nodiscard]] const std::deque<Item>& beginning() const { return beginning_; }
    [[nodiscard]] bool hasRemarks() const;
    /// The columns of letters of equal width that the longest cell of each column takes.
    [[nodiscard]] std::vector<std::size_t> longestCells() const;

private:
    Content& content_;
    std::deque<Item> beginning_;
};

/// Writes a report's items into a file, one by one.
class Writer : private base::NotCopied {
public:
    virtual ~Writer() = default;

    virtual void take(const Item& item) = 0;
    /// Behind the last item.
    virtual void finish() = 0;
    /// What takes long behind that. It reads nothing but what was taken: on any thread.
    virtual void close() {}
};

// Each keeps what it is given until it goes. Those of tables take the items of lists only.
[[nodiscard]] std::unique_ptr<Writer> csvWriter(const KnownContent& content, files::Draft& draft);
[[nodiscard]] std::unique_ptr<Writer> excelWriter(const KnownContent& content, files::Draft& draft);
[[nodiscard]] std::unique_ptr<Writer> textWriter(const KnownContent& content, files::Draft& draft);
[[nodiscard]] std::unique_ptr<Writer> htmlWriter(const KnownContent& content, files::Draft& draft);
[[nodiscard]] std::unique_ptr<Writer> rtfWriter(const KnownContent& content, files::Draft& draft);

}  // namespace reports
