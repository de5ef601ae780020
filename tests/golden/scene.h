#pragma once

/// What the pictures of a generated clip show. All of it is worked out in whole numbers, so that every
/// machine makes the same clips.
enum class Scene {
    Moving,         ///< waves and grain in a slow pan with a block that crosses it; processed: coarse blocks
    Fast,           ///< the same in a fast pan
    Noise,          ///< any sample anywhere
    BlackAndWhite,  ///< noise of the least and the greatest sample
    Flat,           ///< each file one grey
    Equal,          ///< `Moving`, the processed file equal to the original
    Inverted,       ///< `Moving`, the processed file its negative
};

/// A sample on a scale of 0 to 65535. `version` is 0 in the original, 1 and 2 in the processed files, 3 in a
/// mask: black and bright areas. `x` and `y` are in pixels of the picture, whatever the plane.
int SceneSample(Scene scene, int version, int plane, int x, int y, int frame);
