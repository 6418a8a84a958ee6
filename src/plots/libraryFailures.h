#pragma once

namespace tarvex {

// Where memory or threads run out, the libraries that draw end the process by a signal, crash after a warning of
// theirs, or crash in their search for fonts. From this call on such a failure ends it with a message for the user
// instead, under the program's name, and with status 1; what the process has on disk under passing names is deleted.
// All else that these libraries have to say goes where it went. For the whole process, once.
void endOnLibraryFailure(const char* program);

}  // namespace tarvex
