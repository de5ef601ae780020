#pragma once

#include <string>
#include <vector>

#include "catalogue/metric_list.h"
#include "engine/model/output_settings.h"
#include "engine/model/results_store.h"
#include "output/text_raster.h"

/// One text of a caption and where it begins.
struct CaptionText {
    int x = 0;
    int y = 0;
    std::wstring text;
    bool isMaker = false;  ///< in red without a shadow, otherwise in light grey with a dark one

    friend bool operator==(const CaptionText&, const CaptionText&) = default;
};

/// What a caption tells of.
struct CaptionSubject {
    int frame = 0;
    const std::vector<Metric::MetricValue>& values;  ///< of the frame; each of a result that `store` has
    bool isOriginal = false;  ///< the picture of the original itself, which the metrics give no value
    const CResultsStore& store;
    const Metric::CMetricList& metrics;
};

/// The caption for a picture of `width` by `height`: the program's name; as `settings` ask the number of the
/// frame, and for each value the files that it speaks of, metric, component and the value in six digits. What
/// goes beyond the picture isn't moved.
std::vector<CaptionText> CaptionTexts(int width, int height, const CaptionSettings& settings,
                                      const CaptionSubject& subject);

void DrawCaption(TextRaster& raster, const Bitmap24& bitmap, const CaptionSettings& settings,
                 const CaptionSubject& subject);
