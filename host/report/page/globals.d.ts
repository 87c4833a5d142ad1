// What the page has besides its own scripts: the chart library, as one global.
import type uPlot from 'uplot';

declare global {
  interface Window {
    uPlot: typeof uPlot;
  }
}
