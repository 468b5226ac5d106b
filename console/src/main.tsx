import "./styles/base.css";
import "./styles/controls.css";
import "./styles/frame.css";
import "./styles/inventory.css";
import "./styles/pages.css";
import "./styles/details.css";
import "./styles/timeline.css";
import { render } from "preact";
import { App } from "./app";
import { startClock } from "./state/clock";
import { startDocument } from "./state/document";
import { startFaults } from "./state/faults";
import { startInventory } from "./state/inventory";
import { startResources } from "./state/resources";
import { connect } from "./state/stream";
import { startWorld } from "./state/world";

startInventory();
startResources();
startWorld();
startDocument();
startFaults();
startClock();
connect();

const place = document.getElementById("console");
if (place) render(<App />, place);
