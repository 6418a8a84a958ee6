#pragma once

namespace tarvex {

// How an operation ended that a user asked for.
enum class [[nodiscard]] Outcome{
    Done,     // also: nothing had to be done
    Refused,  // it can't be done, failed, or was stopped; the message has been shown, a stop by the user needs none
    Busy      // nothing happened, because another operation is in progress
};

}  // namespace tarvex
