#pragma once

#include <string>

class QWidget;

/// Ways out of the program to its makers, in the user's browser and mail program. If there is none, a message
/// over `parent` gives the address instead.

void OpenProductPage(QWidget* parent);
void SendFeedback(QWidget* parent);
/// Any page, such as that of a metric.
void OpenPage(QWidget* parent, const std::wstring& address);
