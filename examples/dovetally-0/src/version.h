#define VERSION "1.2"
