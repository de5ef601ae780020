#include "video/avi/avi_opendml_parser.h"

#include <exception>
#include <iterator>
#include <utility>

#include "video/avi/avi_walk.h"

rkAviOpenDMLParser::rkAviOpenDMLParser(const std::wstring& fileName) {
    try {
        AviWalk walk(fileName);
        walk.Run();
        totalFrames = walk.totalFrames;
        int number = 0;
        for (const auto& stream : walk.streams) Require(stream->Open(fileName, number++, walk.baseOffset));
        streams.assign(std::make_move_iterator(walk.streams.begin()),
                       std::make_move_iterator(walk.streams.end()));
    } catch (const std::exception&) {
        failed = true;  // not a sound file, or no memory
    }
}
