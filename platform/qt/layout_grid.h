#pragma once

/// The distances that all windows share, in logical pixels. Where the platform has a style of its own its
/// distances hold instead for what layouts take from the style: the margins and the spacing of rows and
/// columns.
constexpr int kWindowMargin = 12;
constexpr int kGroupTopMargin = 10;
constexpr int kGroupSpacing = 10;  // between groups, one below the other
constexpr int kRowSpacing = 6;
constexpr int kSliderRowSpacing = 8;  // between rows with sliders
constexpr int kColumnSpacing = 8;
constexpr int kRadioSpacing = 20;      // between radio buttons in a row
constexpr int kMainButtonWidth = 110;  // the least width of a window's main action
constexpr int kIconButtonWidth = 34;   // the least size of a button that shows an icon only
constexpr int kIconButtonHeight = 28;
