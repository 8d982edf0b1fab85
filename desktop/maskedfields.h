// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

// Keeps passwords from the accessibility bus. Of a line edit whose property "secret" is true, readers there learn the
// name, the length and the place of the cursor; every character is an asterisk. Qt itself hides the text of a password
// field, but neither what is typed into it nor a password that a view button shows. The property must be a field's
// first: its accessible object is made when another one is set. No key press goes to the bus at all.
// Needs the application object; once a process.
void MaskSecretFields();
