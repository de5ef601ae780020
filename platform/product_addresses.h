#pragma once

/// Where the product lives on the network. Settings of the build; without them addresses that never resolve.
/// Static storage.

/// The directory, ending in "/", below which the update server has `update/`. HTTPS, or for tests plain HTTP
/// from 127.0.0.1.
const char* UpdateServer();
const char* ProductPage();
const char* FeedbackAddress();
