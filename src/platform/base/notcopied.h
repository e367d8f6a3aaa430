#pragma once

namespace base {

/// Base of what is neither copied nor moved: it holds something that is released once, or others
/// keep its address.
class NotCopied {
public:
    NotCopied(const NotCopied&) = delete;
    NotCopied& operator=(const NotCopied&) = delete;

protected:
    NotCopied() = default;
    ~NotCopied() = default;
};

}  // namespace base
