#ifndef DRVSH_EXPECTATIONS_H
#define DRVSH_EXPECTATIONS_H

#include <string>
#include <vector>

// Scripts can say what they expect: behind commands, between two equal lines of four or more
// dashes, stands the transcript of these commands.
//
//     driver add 'fxs 1'
//     listen desk
//     ----
//     > listen desk
//       desk: fxs 1: added
//     ----

/// Whether a line of a script begins or ends what is expected.
bool isFence(std::string const& line);

/// Commands, and the transcript that is expected of them.
struct Expectation
{
    std::vector<std::string> commands; ///< Lines as they stand there.
    unsigned line = 0;                 ///< Of the file, where the commands begin, from 1.
    std::string fence;                 ///< Empty behind the last one: nothing more is expected.
    std::vector<std::string> expected;
};

/// Takes the text of a script apart. Commands behind the last transcript become an expectation
/// without a fence. Returns why that can't be done, "LINE: why", or the empty text.
std::string readExpectations(std::string const& text, std::vector<Expectation>& expectations);

/// The script with these transcripts in place of the expected ones, one for each expectation;
/// commands stay as they are. An empty one without a fence is left out, unless it is the only one.
std::string withTranscripts(std::vector<Expectation> const& expectations,
                            std::vector<std::vector<std::string>> const& transcripts);

/// A text cut into its lines. What follows the last line end is a line if it isn't empty.
std::vector<std::string> linesOf(std::string const& text);

#endif
