#pragma once
// KELMO_AUTOLOGIN="account:password:character" signs in at start and picks the
// character, through the same requests that the entry dialogs make.

// Reads the variable; if it is set, stores the account and asks for the
// character list. A malformed value fails with "KELMO_AUTOLOGIN must be
// account:password:character".
void StartAutoLogin();
// At the first character list after StartAutoLogin: picks the named character
// and returns true. False otherwise (the list is for the player then).
bool ChooseAutoLoginCharacter();
