/* A metric plug-in in C: the table of functions laid out by hand. */

#include <stdbool.h>
#include <stdlib.h>
#include <wchar.h>

typedef struct Image {
    const struct ImageTable {
        float* (*plane[7])(struct Image*); /* R, G, B, Y, U, V, L */
        int (*width)(struct Image*);
        int (*height)(struct Image*);
    } * table;
} Image;

typedef void (*Function)(void); /* cast from and to its own type */

typedef struct Object {
    const Function* table;
    int component, width, height, ids[2], frames;
} Object;

static void Init(Object* self, int component, int width, int height, int* resultIdCounter) {
    self->component = component;
    self->width = width;
    self->height = height;
    self->ids[0] = (*resultIdCounter)++;
    self->ids[1] = (*resultIdCounter)++;
}

/* Value 0 has a digit for the first sample of each plane of the first image, 1 the last image's sizes. */
static void Measure(Object* self, Image** images, int imageCount, int* ids, float* values, int* resultCount) {
    Image* last = images[imageCount - 1];
    float place = 1;
    ids[0] = self->ids[0];
    ids[1] = self->ids[1];
    values[0] = 0;
    for (int i = 0; i < 7; ++i, place *= 10) values[0] += place * *images[0]->table->plane[i](images[0]);
    values[1] = (float)(100 * last->table->width(last) + last->table->height(last));
    *resultCount = 2;
    ++self->frames;
}

static void MeasureAndVisualize(Object* self, Image** images, int imageCount, int* ids, float* values,
                                int* resultCount, unsigned char* target, int targetStride) {
    Measure(self, images, imageCount, ids, values, resultCount);
    target[targetStride] = 200; /* the first byte of the second row */
}

static void GetResultInfo(Object* self, int* resultCount, int* ids, int** fileLists, wchar_t** names,
                          bool visualize) {
    *resultCount = visualize ? 2 : 1;
    for (int i = 0; i < *resultCount; ++i) ids[i] = self->ids[i];
    fileLists[0][0] = 2;
    fileLists[0][1] = 0;
    fileLists[0][2] = 1;
    wcscpy(names[0], L"planes");
    if (visualize) {
        fileLists[1][0] = 1;
        fileLists[1][1] = 1;
        wcscpy(names[1], L"size");
    }
}

static void GetAverages(Object* self, int* ids, float* values, int* resultCount, bool visualize) {
    ids[0] = self->ids[1];
    values[0] = (float)self->frames + (visualize ? 0.5f : 0);
    *resultCount = 1;
}

static int GetInputCount(Object* self, bool visualize) {
    return self != NULL && visualize ? 2 : 1;
}

static void GetComponents(Object* self, int* components, int* count) {
    components[0] = 3;
    components[1] = self->component;
    *count = 2;
}

/* The answers that never change. */
#define SAYS(name, text)                              \
    static void name(Object* self, wchar_t* buffer) { \
        wcscpy(buffer, self != NULL ? text : L"");    \
    }
#define IS(type, name, value)            \
    static type name(Object* self) {     \
        return self != NULL ? value : 0; \
    }

SAYS(GetId, L"plugin_in_c")
SAYS(GetUnit, L"steps")
SAYS(GetName, L"Plug-in in C")
SAYS(GetInfoUrl, L"https://c.test")
IS(int, GetBlockWidth, 8)
IS(int, GetBlockHeight, 4)
IS(bool, IsHigherBetter, true)
IS(bool, IsConfigurable, true)

/* Takes a line that names what Init was given. */
static bool Configure(Object* self, const wchar_t* settings) {
    wchar_t expected[64];
    swprintf(expected, 64, L"%d: %d by %d", self->component, self->width, self->height);
    return wcscmp(settings, expected) == 0;
}
/* Longer than the first three buffers that the program comes with: 260, 520, 1040 characters. */
static bool GetDefaultSettings(Object* self, wchar_t* buffer, int size) {
    if (self == NULL || size < 1500) return false;
    wmemset(buffer, L'd', 1499);
    buffer[1499] = 0;
    return true;
}

static void NeverCalled(void) {
    abort();
}

static const Function kTable[] = {NeverCalled,
                                  (Function)Init,
                                  (Function)Measure,
                                  (Function)MeasureAndVisualize,
                                  (Function)GetResultInfo,
                                  (Function)GetAverages,
                                  (Function)GetInputCount,
                                  (Function)GetComponents,
                                  (Function)GetId,
                                  (Function)GetUnit,
                                  (Function)GetBlockWidth,
                                  (Function)GetBlockHeight,
                                  (Function)GetName,
                                  (Function)GetInfoUrl,
                                  (Function)IsHigherBetter,
                                  (Function)IsConfigurable,
                                  (Function)Configure,
                                  (Function)GetDefaultSettings};

void CreateMetric(void** metric) {
    Object* object = calloc(1, sizeof(Object));
    if (object != NULL) object->table = kTable;
    *metric = object;
}

void ReleaseMetric(void* metric) {
    free(metric);
}
