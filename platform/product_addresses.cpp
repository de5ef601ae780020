#include "platform/product_addresses.h"

const char* UpdateServer() {
    return TOLVANE_UPDATE_SERVER;
}

const char* ProductPage() {
    return TOLVANE_PRODUCT_PAGE;
}

const char* FeedbackAddress() {
    return TOLVANE_FEEDBACK_ADDRESS;
}
