#pragma once

namespace tarvex {

// Where memory or threads run out, the libraries that draw end the process by a signal, or crash after a warning of
// theirs. From this call on such a failure ends it with a message for the user instead, under the program's name, and
// with status 1; what the process has on disk under passing names is deleted. All else that these libraries have to
// say goes where it went. For the whole process, once.
void endOnLibraryFailure(const char* program);

// The same where their search for fonts, which doesn't look whether it got its memory, faults in a thread of theirs.
// Requires: no thread of ours but the first does any work.
void endOnLibraryFault();

}  // namespace tarvex
