// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

class QString;
class Report;
struct TerminalConfig;

// What looks wrong with a terminal, by subject.
void FindInFile(const TerminalConfig& terminal, Report& report);      // is it there, for whom, and whose is it
void FindInForm(const TerminalConfig& terminal, Report& report);      // elements that the gate does not read
void FindInPasswords(const TerminalConfig& terminal, Report& report); // the local ones, as they are stored
void FindInDirectory(const TerminalConfig& terminal, Report& report); // how it is to be asked
void FindInClientSettings(const QString& user, Report& report);       // of ldapsearch, about certificates
void FindOnTerminal(const TerminalConfig& terminal, Report& report);  // tools, and files that are in the way
