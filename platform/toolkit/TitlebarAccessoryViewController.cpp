#include "TitlebarAccessoryViewController.h"
