#define VERSION "1.2, patch 1"
