#pragma once

#include <string>

/// Opens a web page in the user's browser. False if there is none, or the address isn't one of HTTP or HTTPS.
bool OpenWebPage(const std::wstring& address);

/// Opens the user's mail program with a new mail to `address`. False if there is none.
bool ComposeMail(const std::wstring& address);

/// Opens a file with the program that the user has for its kind: help pages. False if it doesn't exist, or
/// there is none.
bool OpenFileOutside(const std::wstring& path);
