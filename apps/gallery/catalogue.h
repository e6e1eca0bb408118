/// \file
/// The catalogue that stands behind the pictures of devices.
#pragma once

/// Opens a small catalogue in memory as the application's default database: row 1 is a relay in a hall.
/// False when there is no SQLite driver.
bool openGalleryCatalogue();
