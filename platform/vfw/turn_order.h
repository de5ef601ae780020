#pragma once

#include <deque>
#include <optional>
#include <vector>

/// Gives each sample that a decoder is fed with one turn in the order of display, whatever becomes of it: its
/// picture, a repeat of the picture before, or a failure.
///
/// A codec that reorders gives a picture out some samples after it went in. So a repeat waits until as many
/// turns have been taken as samples went in before it. A failure is taken behind the pictures that were there
/// already, since what place its picture had is unknown; from there to a key frame fed behind it, turns may
/// come with other pictures than those of their place. At that key frame order is back, as all samples fed
/// before a key frame are displayed before it.
class TurnOrder {
public:
    enum class Kind { Picture, Repeat, Failure };
    struct Turn {
        Kind kind;
        int sample;
    };

    /// A sample goes in. Its picture will come out, unless one of the next two says otherwise.
    void Feed(int sample);
    void SetRepeat() { open.back().kind = Kind::Repeat; }
    /// `picturesReady` pictures of earlier samples are there, and displayed before this one.
    void SetFailure(int picturesReady);

    /// Whether the sample's turn is still to come.
    bool IsOpen(int sample) const;
    /// The samples fed before that one whose pictures' turns are still to come.
    std::vector<int> PicturesBefore(int sample) const;

    /// Takes the next turn. The decoder's next picture is that of `picture`, an open sample, or there is
    /// none; at the end, when `finished`, what it didn't give out has failed. None if no turn is due.
    std::optional<Turn> Next(std::optional<int> picture, bool isKey, bool finished);

private:
    struct Sample {
        int number;
        int place;  ///< how many turns come before it: as many as samples went in, or what a failure says
        Kind kind;
    };
    std::deque<Sample>::iterator NextOpen(std::optional<int> picture, bool isKey, bool finished);

    int fed = 0;
    int taken = 0;
    int failures = 0;         ///< among the open ones
    std::deque<Sample> open;  ///< in the order of feeding; what a codec holds back, and repeats behind it
};
