// All tests of the console, one after the other in one process.
import "./views_test";
import "./use_test";
import "./world_test";
import "./stream_test";
import "./docs_test";
